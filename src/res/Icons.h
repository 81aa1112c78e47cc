// SPDX-License-Identifier: MIT
#pragma once

#include <QIcon>

namespace quillon {

// One of the program's own icons by its file name without ending ("tree-node"), in all sizes that
// it is kept in, each also at twice the resolution. A null icon if there is none of that name.
QIcon Icon(const char* name);

}  // namespace quillon
