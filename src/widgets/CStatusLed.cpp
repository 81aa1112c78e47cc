// SPDX-License-Identifier: MIT
#include "widgets/CStatusLed.h"

#include <QPainter>
#include <QTimerEvent>
#include <algorithm>

namespace quillon {
namespace {

constexpr int kSize = 16;
constexpr QRgb kFrameDark = 0xff808080;
constexpr QRgb kFrameLight = 0xffe0e0e0;

void PaintRound(QPainter& painter, const QRectF& lamp, const QColor& colour) {
  painter.setRenderHint(QPainter::Antialiasing);
  painter.setPen(QPen(QColor(0, 0, 0, 110), 1));
  painter.setBrush(colour);
  painter.drawEllipse(lamp.adjusted(0.5, 0.5, -0.5, -0.5));
  const double side = lamp.width();
  painter.setPen(Qt::NoPen);
  painter.setBrush(Qt::white);
  painter.drawEllipse(lamp.topLeft() + QPointF(side * 0.34, side * 0.32), side * 0.11, side * 0.09);
}

void PaintSquare(QPainter& painter, const QRect& lamp, const QColor& colour) {
  painter.fillRect(lamp, QColor(kFrameLight));
  painter.fillRect(lamp.adjusted(0, 0, -2, -2), QColor(kFrameDark));
  painter.fillRect(lamp.adjusted(2, 2, -2, -2), colour);
}

}  // namespace

CStatusLed::CStatusLed(const QString& name, LedStyle style, QWidget* parent)
    : QWidget(parent), style_(style), on_(qRgb(0, 255, 0)), off_(qRgb(0, 125, 0)) {
  setSizePolicy(QSizePolicy::Fixed, QSizePolicy::Fixed);
  setAccessibleName(name);
  Describe();
}

void CStatusLed::SetColours(QRgb on, QRgb off) {
  on_ = on;
  off_ = off;
  update();
}

void CStatusLed::SetLit(bool lit) {
  lit_ = lit;
  Describe();
  update();
}

void CStatusLed::SetBlinkPeriod(int milliseconds) {
  timer_.stop();
  // A coarse timer is up to a twentieth off, and lamps that were lit together drift apart.
  if (milliseconds >= 1) timer_.start(milliseconds, Qt::PreciseTimer, this);
  Describe();
}

QSize CStatusLed::sizeHint() const {
  const int side = std::max(kSize, fontMetrics().height());
  return {side, side};
}

void CStatusLed::timerEvent(QTimerEvent* event) {
  if (event->timerId() != timer_.timerId()) return QWidget::timerEvent(event);
  lit_ = !lit_;
  update();
}

void CStatusLed::paintEvent(QPaintEvent*) {
  QPainter painter(this);
  const int side = std::min(width(), height());
  const QRect lamp((width() - side) / 2, (height() - side) / 2, side, side);
  const QColor colour(lit_ ? on_ : off_);
  if (style_ == LedStyle::kRound) {
    PaintRound(painter, lamp, colour);
  } else {
    PaintSquare(painter, lamp, colour);
  }
}

// Not at every blink: a screen reader would say nothing else.
void CStatusLed::Describe() {
  const QString state = timer_.isActive() ? tr("blinking") : lit_ ? tr("lit") : tr("dark");
  if (state != accessibleDescription()) setAccessibleDescription(state);
}

}  // namespace quillon
