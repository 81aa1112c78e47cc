// SPDX-License-Identifier: MIT
#include "app/Elevated.h"

namespace quillon {

AccessHelp SystemAccessHelp() { return {}; }

}  // namespace quillon
