// SPDX-License-Identifier: MIT
#pragma once

#include <QTabWidget>

class QLabel;

namespace quillon {

// The right side of the window while no board's pages are shown: one tab "Quillon".
class CHomePage : public QTabWidget {
  Q_OBJECT

 public:
  explicit CHomePage(QWidget* parent = nullptr);

  // Says what there is to choose from, or what to do when there is nothing.
  void ShowBoardCount(std::uint32_t count);
  // Says that boards are being looked for.
  void ShowSearch();

 Q_SIGNALS:
  void RefreshRequested();

 private:
  QLabel* hint_;
};

}  // namespace quillon
