// SPDX-License-Identifier: MIT
#pragma once

#include "settings/Sheet.h"

// What the settings of the joystick-style controllers do to each other.
namespace quillon {

extern const Rules kAnalogRules, kDigitalRules, kHatRules, kExpansionRules, kMatrixInputRules;

// "Rotary" among the modes of digital inputs: those of a joystick controller's, and those of the
// scan matrix controller's.
inline constexpr std::uint32_t kDigitalRotary = 4, kMatrixRotary = 2;

// Modes of a HAT connector.
inline constexpr std::uint32_t kHatPov = 0, kHatFalco = 4;

}  // namespace quillon
