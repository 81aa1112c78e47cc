// SPDX-License-Identifier: MIT
#pragma once

class QPushButton;

namespace quillon {

// For a button that means "Program" and "Abort" in turn: the second press of a double click and the
// repeats of a key that is held mean neither. The events say so themselves, even if an erase or a
// detection kept them waiting.
void GuardFromRepeats(QPushButton* button);

}  // namespace quillon
