// SPDX-License-Identifier: MIT
#pragma once

#include <QPushButton>

namespace quillon {

// A button with a large image. Image and text start at its edge, not in its middle, so that the
// images of buttons below each other are in line, however long the texts are.
class CImageButton : public QPushButton {
  Q_OBJECT

 public:
  CImageButton(const QIcon& image, const QString& text, QWidget* parent = nullptr);

  QSize sizeHint() const override;

 protected:
  void paintEvent(QPaintEvent* event) override;

 private:
  int TextWidth() const;
};

}  // namespace quillon
