// SPDX-License-Identifier: MIT
#pragma once

#include <QLabel>

namespace quillon {

// The line "File : " with a path, which is shortened in the middle where it is too long for its
// place. The tool tip shows all of it.
class CPathLabel : public QLabel {
  Q_OBJECT

 public:
  explicit CPathLabel(QWidget* parent = nullptr);

  // The path is fit to be shown.
  void ShowPath(const QString& path);

 protected:
  void paintEvent(QPaintEvent* event) override;
};

}  // namespace quillon
