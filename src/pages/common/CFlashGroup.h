// SPDX-License-Identifier: MIT
#pragma once

#include <QGroupBox>
#include <QString>

class QLabel;
class QPushButton;

namespace quillon {

class CFlashProgress;
class CReportText;

// The "Flash Update" group: the log, the file, the progress and the buttons. It shows what it is
// told; the page decides what the buttons do.
class CFlashGroup : public QGroupBox {
  Q_OBJECT

 public:
  explicit CFlashGroup(QWidget* parent = nullptr);

  // Shows the loaded file: its path, and how much it holds.
  void ShowFile(const QString& path, const QString& loaded);
  // Shows that no file is loaded; the path of the last one stays.
  void ShowNoFile();

  CReportText& Log() { return *log_; }
  CFlashProgress& Progress() { return *progress_; }
  QPushButton& ProgramButton() { return *program_button_; }
  QPushButton& ExecuteButton() { return *execute_button_; }
  QPushButton& LoadButton() { return *load_button_; }

 private:
  CReportText* log_;
  QLabel* file_;
  CFlashProgress* progress_;
  QPushButton* program_button_ = nullptr;
  QPushButton* execute_button_ = nullptr;
  QPushButton* load_button_ = nullptr;
};

}  // namespace quillon
