// SPDX-License-Identifier: MIT
#pragma once

#include "pages/common/GridRows.h"

class QWidget;

namespace quillon {

class UserPrompts;

// The columns that the grids of digital inputs of several families have in common. Where they
// stand and which field they show differs.
GridColumn InputOnColumn(int column, Field field);
GridColumn InputMasterColumn(int column, Field field);
GridColumn InputInvertColumn(int column, Field field);
// A mode's code is its place in the list. Blanks around the title are kept.
GridColumn InputModeColumn(int column, const QString& title, const QStringList& modes, Field field);
// More can be typed than the field holds, so that RefusePulseWidth() can say what is wrong.
GridColumn PulseWidthColumn(int column, Field field);
// Gives every row the texts of line A; EncoderPairs gives the even rows those of line B.
GridColumn EncoderColumn(int column, const QString& title, Field field);

// To be called at the end of an edit of a pulse width. If the field cannot hold the number, shows a
// message and returns true.
[[nodiscard]] bool RefusePulseWidth(std::uint32_t entered, UserPrompts& prompts, QWidget* parent);

}  // namespace quillon
