// SPDX-License-Identifier: MIT
#pragma once

#include <QFrame>

#include "app/Elevated.h"
#include "devlink/DeviceTable.h"

class QLabel;
class QPushButton;

namespace quillon {

// Tells how many boards cannot be used; the tree tells why of each. Where the user only lacks the
// permission, installs the udev rule that gives it, or hands out the command that does. Hidden
// while all is well.
class CProblemLine : public QFrame {
  Q_OBJECT

 public:
  explicit CProblemLine(AccessHelp help, QWidget* parent = nullptr);

  // Shows what a detection found: `general`, fit to be shown or empty, and the table's boards.
  void Show(const QString& general, const DeviceTable& table);

 signals:
  // The boards may be open to the user from now on.
  void RuleInstalled();

 private:
  QString OfferRule(bool wanted);
  void Install();
  void OnInstallEnded(const ElevatedResult& result);
  void CopyCommand();
  void Tell(const QString& last);

  AccessHelp help_;
  QString findings_;  // of the last detection
  QLabel* text_;
  QPushButton* install_;
  QPushButton* copy_;
};

}  // namespace quillon
