// SPDX-License-Identifier: MIT
#include "widgets/CEditMark.h"

#include <QEvent>
#include <QPainter>

namespace quillon {

CEditMark::CEditMark(QWidget* control) : QWidget(control) {
  setAttribute(Qt::WA_TransparentForMouseEvents);
  setFixedSize(kSize, kSize);
  control->installEventFilter(this);
  MoveToCorner();
  hide();
}

void CEditMark::SetState(const QString& words) {
  setVisible(!words.isEmpty());
  QWidget* const control = parentWidget();
  const QString tip = control->toolTip();
  // Without a description of its own a control is described by its tooltip.
  const bool told = words.isEmpty() || tip.startsWith(words);
  control->setAccessibleDescription(told ? QString() : QStringLiteral("%1 %2").arg(words, tip));
}

bool CEditMark::eventFilter(QObject* watched, QEvent* event) {
  if (event->type() == QEvent::Resize) MoveToCorner();
  return QWidget::eventFilter(watched, event);
}

void CEditMark::paintEvent(QPaintEvent* /*event*/) {
  QPainter painter(this);
  painter.setPen(Qt::NoPen);
  painter.setBrush(palette().highlight());
  const QPoint triangle[] = {{kSize, 0}, {0, 0}, {kSize, kSize}};
  painter.drawPolygon(triangle, 3);
}

void CEditMark::MoveToCorner() { move(parentWidget()->width() - kSize, 0); }

}  // namespace quillon
