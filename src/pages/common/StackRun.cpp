// SPDX-License-Identifier: MIT
#include "pages/common/StackRun.h"

#include <QCoreApplication>
#include <QGuiApplication>
#include <QStyleHints>
#include <utility>

namespace quillon {

StackRun::StackRun(ExchangeGate& gate, QObject* parent, Clock clock)
    : QObject(parent), gate_(gate), clock_(std::move(clock)) {}

StackRun::Clock StackRun::SteadyClock() {
  return [] {
    return std::chrono::duration_cast<std::chrono::milliseconds>(
        std::chrono::steady_clock::now().time_since_epoch());
  };
}

void StackRun::Run(const Step& work, Step on_stop) {
  if (JustStopped()) return;
  {
    const auto hold = gate_.TryEnter();
    if (!hold) return;
    on_stop_ = std::move(on_stop);
    under_way_ = true;
    stop_item_ = stop_run_ = false;
    Q_EMIT Begun();
    work();
    under_way_ = false;
  }
  Q_EMIT Ended();
}

void StackRun::TurnEventLoop() { QCoreApplication::processEvents(); }

void StackRun::StopItem() { TakeWish(stop_item_); }

void StackRun::StopRun() { TakeWish(stop_run_); }

void StackRun::TakeWish(bool& wish) {
  if (!under_way_) return;
  const bool known = IsToStop();
  wish = true;
  if (known) return;
  stopped_at_ = clock_();
  on_stop_();
}

// With whatever key or button the press was made.
bool StackRun::JustStopped() const {
  const std::chrono::milliseconds interval(
      QGuiApplication::styleHints()->mouseDoubleClickInterval());
  return stopped_at_ && clock_() - *stopped_at_ < interval;
}

}  // namespace quillon
