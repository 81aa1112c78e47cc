// SPDX-License-Identifier: MIT
#pragma once

#include <QBasicTimer>
#include <QRgb>
#include <QWidget>

namespace quillon {

enum class LedStyle { kRound = 3001, kSquare = 3002 };

// A small lamp. Its colours mean something and are painted exactly, whatever the palette. A timer
// runs only while the lamp blinks.
class CStatusLed : public QWidget {
  Q_OBJECT

 public:
  // The name is what a screen reader says, followed by the state: lit, dark or blinking.
  CStatusLed(const QString& name, LedStyle style, QWidget* parent = nullptr);

  void SetColours(QRgb on, QRgb off);
  void SetLit(bool lit);
  bool IsLit() const { return lit_; }
  // The lamp is inverted after each period; 0 or less stops the blinking and leaves the lamp as it
  // is.
  void SetBlinkPeriod(int milliseconds);
  bool IsBlinking() const { return timer_.isActive(); }

  QSize sizeHint() const override;
  QSize minimumSizeHint() const override { return sizeHint(); }

 protected:
  void timerEvent(QTimerEvent* event) override;
  void paintEvent(QPaintEvent* event) override;

 private:
  void Describe();

  LedStyle style_;
  QRgb on_;
  QRgb off_;
  bool lit_ = false;
  QBasicTimer timer_;
};

}  // namespace quillon
