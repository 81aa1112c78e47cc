// SPDX-License-Identifier: MIT
#pragma once

class QEventLoop;

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

}  // namespace quillon
