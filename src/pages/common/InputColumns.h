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
// The modes' codes are their places in the list. The title keeps its blanks.
GridColumn InputModeColumn(int column, const QString& title, const QStringList& modes, Field field);
// More can be typed than the field holds, so that RefusePulseWidth() can say what is wrong.
GridColumn PulseWidthColumn(int column, Field field);
// Shows line A in every row; EncoderPairs makes line B of the even ones.
GridColumn EncoderColumn(int column, const QString& title, Field field);

// For the end of an edit of a pulse width: true, after a message, when the field does not hold it.
[[nodiscard]] bool RefusePulseWidth(std::uint32_t entered, UserPrompts& prompts, QWidget* parent);

}  // namespace quillon
