// SPDX-License-Identifier: MIT
#pragma once

#include <QWidget>

namespace quillon {

// The small corner that marks a control, as the grid's cells have one. Lies over its control's top
// right corner, follows its size and lets the mouse through. Hidden at first.
class CEditMark : public QWidget {
  Q_OBJECT

 public:
  static constexpr int kSize = 8;

  explicit CEditMark(QWidget* control);

  // Shows the mark; what it means is read out by screen readers before the control's tooltip,
  // unless that begins with it. Without words the mark is hidden.
  void SetState(const QString& words);

 protected:
  bool eventFilter(QObject* watched, QEvent* event) override;
  void paintEvent(QPaintEvent* event) override;

 private:
  void MoveToCorner();
};

}  // namespace quillon
