// SPDX-License-Identifier: MIT
#include "bench/PaintedView.h"

#include <QCoreApplication>
#include <QPaintEvent>

namespace quillon::bench {

PaintedView::PaintedView(QAbstractScrollArea& view) : view_(view) {
  QCoreApplication::processEvents();
  view_.viewport()->installEventFilter(this);
}

void PaintedView::Paint() {
  ++asked_;
  QCoreApplication::sendPostedEvents();
  view_.viewport()->repaint();
}

bool PaintedView::eventFilter(QObject* watched, QEvent* event) {
  if (event->type() == QEvent::Paint &&
      static_cast<QPaintEvent*>(event)->rect() == view_.viewport()->rect()) {
    ++painted_;
  }
  return QObject::eventFilter(watched, event);
}

}  // namespace quillon::bench
