// SPDX-License-Identifier: MIT
#pragma once

class QAbstractButton;

namespace quillon {

// Has screen readers click a check box or radio button, where they would only set its state. For
// one whose click does more than its state tells.
void LetScreenReadersClick(QAbstractButton* button);

}  // namespace quillon
