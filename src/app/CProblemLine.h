// SPDX-License-Identifier: MIT
#pragma once

#include <QFrame>

#include "app/Elevated.h"
#include "devlink/DeviceTable.h"

class QLabel;
class QPushButton;

namespace quillon {

// Tells what keeps the first board from working and how many others there are, of which the tree
// tells. Where the user only lacks the permission, installs the udev rule that gives it, or hands
// out the command that does. Hidden while all is well.
class CProblemLine : public QFrame {
  Q_OBJECT

 public:
  explicit CProblemLine(AccessHelp help, QWidget* parent = nullptr);

  // Shows the outcome of a detection: `general`, fit to be shown or empty, and what is wrong with
  // the boards of the table.
  void Show(const QString& general, const DeviceTable& table);

 signals:
  // The boards may be open to the user from now on.
  void RuleInstalled();

 private:
  QString Advice(bool locked);
  void Install();
  void OnInstallEnded(const ElevatedResult& result);
  void CopyCommand();
  void UpdateButtons();

  AccessHelp help_;
  QLabel* text_;
  QLabel* outcome_;  // of the last press of a button
  QPushButton* install_;
  QPushButton* copy_;
  FoundRule rule_{};
  bool offered_ = false;  // the buttons
  bool running_ = false;
};

}  // namespace quillon
