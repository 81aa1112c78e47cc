// SPDX-License-Identifier: MIT
#pragma once

#include "settings/Sheet.h"

// Rules that the digital inputs of several families have in common. Inputs are lines of the table
// "input"; the inputs 1 and 2, 3 and 4 and so on are pairs, as rotary encoders are wired: line A to
// the odd one, line B to the even one.
namespace quillon {

// To be called after an edit of "mode": a pair is `rotary` on both inputs or on neither, in which
// case the other one becomes mode 0.
void KeepRotaryPaired(Sheet& sheet, Cell mode, std::uint32_t rotary);

// To be called after an edit of "encoder" on an odd input: the even one decodes the same.
void CopyDecodingToLineB(Sheet& sheet, Cell encoder);

// Clears the setting in all other rows.
void ClearOthers(Sheet& sheet, Cell cell);

}  // namespace quillon
