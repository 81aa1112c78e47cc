// SPDX-License-Identifier: MIT
#pragma once

#include <QTabWidget>

class QGridLayout;
class QLabel;

namespace quillon {

// The right side of the window while no board's pages are shown: one tab "Quillon" with large
// buttons for what can be done without a board. It only says what is asked for.
class CHomePage : public QTabWidget {
  Q_OBJECT

 public:
  explicit CHomePage(QWidget* parent = nullptr);

  // Says what there is to choose from, or what to do when there is nothing.
  void ShowBoardCount(std::uint32_t count);
  // Says that boards are being looked for.
  void ShowSearch();

 Q_SIGNALS:
  // Close all boards and detect them again.
  void RefreshRequested();
  // Look for a newer version of the program.
  void UpdatesRequested();
  void HelpRequested();
  void WebSiteRequested();

 private:
  void AddButtons();
  void AddButton(const char* image, const QString& text, const QString& caption, const QString& tip,
                 void (CHomePage::*request)());

  QLabel* hint_;
  QGridLayout* buttons_ = nullptr;
};

}  // namespace quillon
