// SPDX-License-Identifier: MIT
#pragma once

#include <QAbstractScrollArea>

namespace quillon::bench {

// Paints a view at once and checks that it did happen: a window that is not exposed yet takes the
// request and paints nothing, which would look fast.
class PaintedView : public QObject {
  Q_OBJECT

 public:
  // The view is shown by now.
  explicit PaintedView(QAbstractScrollArea& view);

  // Everything of its window that is to be painted, and all of its viewport.
  void Paint();

  // Whether every call painted the whole viewport.
  bool Check() const { return asked_ > 0 && painted_ >= asked_; }

  bool eventFilter(QObject* watched, QEvent* event) override;

 private:
  QAbstractScrollArea& view_;
  int asked_ = 0;
  int painted_ = 0;
};

}  // namespace quillon::bench
