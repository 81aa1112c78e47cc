// SPDX-License-Identifier: MIT
#pragma once

#include <cstddef>
#include <string_view>

#include "kvusb/HidLibrary.h"

namespace quillon {

inline constexpr std::size_t kSerialDigits = 3;

// Whether the text begins with three digits.
bool IsSerialNumber(std::string_view text);

enum class SerialResult {
  kInvalid,  // no serial number; nothing was sent
  kSet,      // takes effect at the board's next start
  kRefused,  // the board answered something else
};

// Gives the board the first three characters as its serial number. A failed exchange counts as kSet
// on purpose: the board may have taken the number though its answer was lost, and the report after
// its next start shows the truth.
SerialResult SetSerial(HidLibrary& library, DeviceRecord& board, std::string_view text);

}  // namespace quillon
