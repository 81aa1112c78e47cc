// SPDX-License-Identifier: MIT
#pragma once

namespace quillon {

class CGridCtrl;

// Gives screen readers the cells of all grids with their values, and lets them click. Qt's own
// interface of a table shows names only, and its action "Toggle" selects. To be called before
// anything else is done with a grid.
void InstallGridAccessibility();

// Tells screen readers that a box was checked or cleared.
void TellToggled(CGridCtrl& grid, int row, int column);
// Tells them which cell has the focus, where they only know that the grid has it.
void TellFocused(CGridCtrl& grid);

}  // namespace quillon
