// SPDX-License-Identifier: MIT
#pragma once

#include <QStringList>

namespace quillon {

// The joystick axes by their code, 0 to 7.
inline QStringList AxisNames() { return {"X", "Y", "Z", "Rx", "Ry", "Rz", "S1", "S2"}; }

}  // namespace quillon
