// SPDX-License-Identifier: MIT
#pragma once

#include <cstdint>

class QWidget;

namespace quillon {

class UserPrompts;

// More can be typed than a pulse width may be, so that AcceptPulseWidth() can say what is wrong.
inline constexpr std::uint32_t kLargestPulseEntry = 999;

// To be asked when a pulse width was entered. If no board can hold the number, shows a message and
// returns false.
[[nodiscard]] bool AcceptPulseWidth(std::uint32_t entered, UserPrompts& prompts, QWidget* parent);

}  // namespace quillon
