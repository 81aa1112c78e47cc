// SPDX-License-Identifier: MIT
#pragma once

#include <QDialog>

namespace quillon {

// The About box: the program's version and the disclaimer.
class CAboutDlg : public QDialog {
  Q_OBJECT

 public:
  explicit CAboutDlg(QWidget* parent);
};

}  // namespace quillon
