// SPDX-License-Identifier: MIT
#pragma once

#include <QObject>
#include <chrono>
#include <functional>
#include <optional>

#include "devlink/ExchangeGate.h"

namespace quillon {

// Long work that runs on the stack of the click that began it and turns the event loop in between:
// a flash update. It holds the gate from its start to its end, so that no other handler starts an
// exchange meanwhile, whichever buttons are enabled.
//
// The user may stop the item that is under way, which says nothing of the next one, or the whole
// run. Either is a wish: the work asks for it where it can stop.
class StackRun : public QObject {
  Q_OBJECT

 public:
  // Time since some moment; never goes back.
  using Clock = std::function<std::chrono::milliseconds()>;
  using Step = std::function<void()>;

  // The gate outlives the run.
  explicit StackRun(ExchangeGate& gate, QObject* parent = nullptr, Clock clock = SteadyClock());

  // Runs the work, with its first item begun. `on_stop` is called when a wish to stop comes, at
  // most once an item. Does nothing while something else holds the gate, or if the user wished to
  // stop a moment ago: the second press on "Abort" is not meant for the "Program" that the button
  // has become.
  void Run(const Step& work, Step on_stop);

  bool IsUnderWay() const { return under_way_; }

  // For the work: from here on, a wish to stop the item before does not count any more.
  void BeginItem() { stop_item_ = false; }
  bool IsToStop() const { return stop_item_ || stop_run_; }
  // For the work: whether to begin no further item, whatever becomes of this one.
  bool IsRunToStop() const { return stop_run_; }
  // For the work: handles the events that wait, a click on "Abort" among them.
  void TurnEventLoop();

  // The "Abort" button. Does nothing without a run.
  void StopItem();
  // Closing the window: no item of this run is worth beginning any more. Does nothing without a
  // run.
  void StopRun();

 Q_SIGNALS:
  // Around the work. In between, nothing else may be chosen in the window. Ended() comes however
  // the work ends, and with the gate open.
  void Begun();
  void Ended();

 private:
  static Clock SteadyClock();

  void TakeWish(bool& wish);
  bool JustStopped() const;

  ExchangeGate& gate_;
  Clock clock_;
  Step on_stop_;
  std::optional<std::chrono::milliseconds> stopped_at_;
  bool under_way_ = false;
  bool stop_item_ = false;
  bool stop_run_ = false;
};

}  // namespace quillon
