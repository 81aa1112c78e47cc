// SPDX-License-Identifier: MIT
#pragma once

#include <array>
#include <cstdint>
#include <optional>

#include "boards/Report.h"

namespace quillon::sim {

struct AxisRange {
  std::uint16_t min = 0x0400, center = 0x8000, max = 0xFC00;
  bool operator==(const AxisRange&) const = default;
};

using AxisRanges = std::array<AxisRange, 8>;

// The calibration of a board's axes. One axis at a time is open; opening another one, or a restart,
// drops what was measured. While an axis is open, its control moves: the first reading gives what
// is stored, and each further one gives a wider range and another center, in the same way every
// time.
//
//   0x30  opens the axis in byte 6, or reads it again: min, center, max, little-endian, from byte 1
//   0x31  stores what the last reading gave; refused when the axis is not open
//   0x32  closes without storing; nothing to close is fine
//   0x33  stores min, center, max from bytes 7 to 12 in whatever order they are
class Calibration {
 public:
  // Nothing when the request is not about calibration.
  std::optional<Reply> Handle(AxisRanges& stored, Request request);
  void Restart() { open_.reset(); }

 private:
  struct Open {
    std::uint8_t axis;
    unsigned readings;
    AxisRange measured;
  };

  Reply Measure(const AxisRanges& stored, std::uint8_t axis);

  std::optional<Open> open_;
};

}  // namespace quillon::sim
