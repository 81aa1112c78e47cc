// SPDX-License-Identifier: MIT
#pragma once

class QWidget;

namespace quillon {

// Keeps the mouse wheel from changing a spin box or a drop-down list that does not have the focus,
// and from giving it the focus: a user who scrolls past a setting does not mean to change it.
void GuardFromWheel(QWidget* control);

}  // namespace quillon
