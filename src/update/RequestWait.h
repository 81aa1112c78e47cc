// SPDX-License-Identifier: MIT
#pragma once

#include <QEventLoop>
#include <mutex>
#include <optional>
#include <utility>

namespace quillon {

// Where one request at a time waits for its answer: in an event loop in which what the user clicks
// and types reaches no window, and is lost. Painting and closing a window go on. (An event loop
// that excludes user input would also keep a window from being closed, and would deliver the clicks
// later, when they mean something else.)
class RequestWait {
 public:
  bool IsUnderWay() const { return loop_ != nullptr; }

  // Turns the loop until it is quit. False if Stop() was among the reasons.
  bool Run(QEventLoop& loop);

  // Ends Run(). Does nothing without one.
  void Stop();

 private:
  QEventLoop* loop_ = nullptr;
  bool stopped_ = false;
};

// What a thread that waits in an event loop shares with one that works for it. Either may be gone
// before the other, as long as both hold a pointer to this.
template <typename Result>
class Handover {
 public:
  explicit Handover(QEventLoop& loop) : loop_(&loop) {}

  // Ends the loop. Only the first result counts, and none when nobody waits any more.
  void Deliver(Result result) {
    const std::lock_guard lock(mutex_);
    if (loop_ == nullptr || result_) return;
    result_ = std::move(result);
    QMetaObject::invokeMethod(loop_, &QEventLoop::quit, Qt::QueuedConnection);
  }

  bool IsAwaited() {
    const std::lock_guard lock(mutex_);
    return loop_ != nullptr;
  }

  // What was delivered, if anything was. The loop may go now.
  std::optional<Result> Leave() {
    const std::lock_guard lock(mutex_);
    loop_ = nullptr;
    return std::exchange(result_, std::nullopt);
  }

 private:
  std::mutex mutex_;
  QEventLoop* loop_;  // null when nobody waits any more
  std::optional<Result> result_;
};

}  // namespace quillon
