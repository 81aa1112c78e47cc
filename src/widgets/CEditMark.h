// SPDX-License-Identifier: MIT
#pragma once

#include <QWidget>

namespace quillon {

// The small corner that marks an edited control, as the grid's cells have one. Lies over its
// control's top right corner, follows its size and lets the mouse through. While it is shown, the
// control's description says "edited" to screen readers.
class CEditMark : public QWidget {
  Q_OBJECT

 public:
  static constexpr int kSize = 8;

  explicit CEditMark(QWidget* control);

  void setVisible(bool visible) override;

 protected:
  bool eventFilter(QObject* watched, QEvent* event) override;
  void paintEvent(QPaintEvent* event) override;

 private:
  void MoveToCorner();
};

}  // namespace quillon
