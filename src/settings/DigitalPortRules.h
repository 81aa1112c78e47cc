// SPDX-License-Identifier: MIT
#pragma once

#include "settings/Sheet.h"

// What the settings of the boards with digital inputs only do to each other.
namespace quillon {

extern const Rules kDigitalPortRules, kInputBankRules;

// "Rotary" among the modes of a port: as it is chosen, and as it is shown after a retrieve.
inline constexpr std::uint32_t kPortRotary = 2, kHeldPortRotary = 3;

}  // namespace quillon
