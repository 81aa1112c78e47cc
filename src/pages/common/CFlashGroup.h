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
// told; what the buttons do is the page's to say.
class CFlashGroup : public QGroupBox {
  Q_OBJECT

 public:
  explicit CFlashGroup(QWidget* parent = nullptr);

  // The loaded file: its path, and what it says of itself.
  void ShowFile(const QString& path, const QString& loaded);
  // No file is loaded; the path of the one before stays.
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
