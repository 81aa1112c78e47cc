// SPDX-License-Identifier: MIT
#include <gmock/gmock.h>

#include <QAbstractEventDispatcher>
#include <QCoreApplication>
#include <QImage>
#include <QPalette>
#include <QTimerEvent>

#include "widgets/CStatusLed.h"

namespace quillon {
namespace {

const QRgb kRed = qRgb(255, 0, 0);
const QRgb kDarkRed = qRgb(125, 0, 0);

QList<QAbstractEventDispatcher::TimerInfo> TimersOf(CStatusLed& lamp) {
  return QAbstractEventDispatcher::instance()->registeredTimers(&lamp);
}

void Tick(CStatusLed& lamp) {
  ASSERT_EQ(TimersOf(lamp).size(), 1);
  QTimerEvent event(TimersOf(lamp).first().timerId);
  QCoreApplication::sendEvent(&lamp, &event);
}

QRgb ColourOf(CStatusLed& lamp) {
  lamp.resize(20, 20);
  return lamp.grab().toImage().pixel(13, 14);
}

TEST(StatusLed, StartsDarkAndRunsATimerOnlyWhileBlinking) {
  CStatusLed lamp(QStringLiteral("Error"), LedStyle::kRound);
  EXPECT_FALSE(lamp.IsLit());
  EXPECT_TRUE(TimersOf(lamp).isEmpty());
  lamp.SetLit(true);
  EXPECT_TRUE(TimersOf(lamp).isEmpty());
  lamp.SetBlinkPeriod(250);
  lamp.SetBlinkPeriod(400);
  ASSERT_EQ(TimersOf(lamp).size(), 1);
  EXPECT_EQ(TimersOf(lamp).first().interval, 400);
  EXPECT_EQ(TimersOf(lamp).first().timerType, Qt::PreciseTimer);
  lamp.SetBlinkPeriod(0);
  EXPECT_TRUE(TimersOf(lamp).isEmpty());
  EXPECT_TRUE(lamp.IsLit());
}

TEST(StatusLed, InvertsAtEveryTickAndTellsItsStateButNotEveryBlink) {
  CStatusLed lamp(QStringLiteral("Busy"), LedStyle::kRound);
  EXPECT_EQ(lamp.accessibleName(), QStringLiteral("Busy"));
  EXPECT_EQ(lamp.accessibleDescription(), QStringLiteral("dark"));
  lamp.SetLit(true);
  EXPECT_EQ(lamp.accessibleDescription(), QStringLiteral("lit"));
  lamp.SetBlinkPeriod(250);
  for (const bool lit : {false, true, false}) {
    Tick(lamp);
    EXPECT_EQ(lamp.IsLit(), lit);
    EXPECT_EQ(lamp.accessibleDescription(), QStringLiteral("blinking"));
  }
  lamp.SetLit(true);
  Tick(lamp);
  EXPECT_FALSE(lamp.IsLit());
}

TEST(StatusLed, PaintsItsExactColoursWhateverThePalette) {
  for (const LedStyle style : {LedStyle::kRound, LedStyle::kSquare}) {
    CStatusLed lamp(QStringLiteral("Error"), style);
    QPalette dark;
    dark.setColor(QPalette::Window, QColor(20, 20, 20));
    dark.setColor(QPalette::WindowText, Qt::white);
    lamp.setPalette(dark);
    lamp.SetColours(kRed, kDarkRed);
    EXPECT_EQ(ColourOf(lamp), kDarkRed);
    lamp.SetLit(true);
    EXPECT_EQ(ColourOf(lamp), kRed);
    lamp.setEnabled(false);
    EXPECT_EQ(ColourOf(lamp), kRed);
  }
}

}  // namespace
}  // namespace quillon
