// SPDX-License-Identifier: MIT
#pragma once

#include <chrono>
#include <string>

namespace quillon {

// A flash update over time: when its progress is worth drawing, how long it has taken, and how long
// the rest will take. Drawing every record would cost more than sending it. Times are those of any
// steady clock.
class FlashPace {
 public:
  using Time = std::chrono::milliseconds;

  // Least time between two drawings, which take about a millisecond each. The first and the last
  // record are always drawn.
  static constexpr Time kInterval{100};

  void Begin(int records, Time now);

  // Whether to draw this position, counted from 0; remembers that it was drawn.
  bool IsDue(int position, Time now);

  // "0:05, about 0:07 left"; nothing about the rest before the first and after the last record.
  std::string Describe(int position, Time now) const;

 private:
  int records_ = 0;
  Time begun_{0};
  Time drawn_{0};
};

}  // namespace quillon
