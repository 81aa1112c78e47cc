// SPDX-License-Identifier: MIT
#pragma once

#include "pages/common/CSettingsGrid.h"

namespace quillon {

class UserPrompts;

// The grid of digital inputs, of which boards have more or fewer settings; a pair of rows reads as
// a unit.
GridLayout InputGrid();

// To be asked when a number was entered into that grid. If no board can hold it as a pulse width,
// shows a message and returns false.
[[nodiscard]] bool AcceptInput(const Setting& setting, std::uint32_t entered, UserPrompts& prompts,
                               QWidget* parent);

}  // namespace quillon
