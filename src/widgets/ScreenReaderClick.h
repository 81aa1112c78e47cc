// SPDX-License-Identifier: MIT
#pragma once

class QAbstractButton;

namespace quillon {

// Makes screen readers click a check box or radio button, where they would only set its state. For
// a button whose click does more than change its state.
void LetScreenReadersClick(QAbstractButton* button);

}  // namespace quillon
