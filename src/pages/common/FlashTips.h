// SPDX-License-Identifier: MIT
#pragma once

#include <QString>

#include "pages/common/FlashControls.h"

class QWidget;

namespace quillon {

// The boards that the tips speak of, by name. A page serves a whole family, so the last run may
// have been on another board than the one that is selected now.
struct FlashBoards {
  QString selected;
  QString of_run;  // stands at the beginning of a sentence
  bool same = true;
};

// What a control does to the board, or why it is disabled in this state. Plain text for a tool tip,
// whatever the boards' names look like.
QString FlashTip(FlashControl control, bool enabled, const FlashPageState& state,
                 const FlashBoards& boards);

// Enables the widget of a control, or not, and gives it its tip.
void ShowControl(QWidget& widget, FlashControl control, const FlashPageState& state,
                 const FlashBoards& boards);

}  // namespace quillon
