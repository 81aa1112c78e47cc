// SPDX-License-Identifier: MIT
#pragma once

class QString;

namespace quillon::stage {

// Gives the application one style and the palette "light" or "dark", whatever the desktop has, so
// that pictures from different machines can be compared. False for any other name.
bool UsePalette(const QString& name);

}  // namespace quillon::stage
