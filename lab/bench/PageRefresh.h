// SPDX-License-Identifier: MIT
#pragma once

#include "kvusb/HidLibrary.h"

namespace quillon::bench {

// A page of 64 rows and 8 columns: a retrieve that changes most cells, from the answers to the
// painted page, against a bare table view in which every cell changes. `library` answers at once.
// False when the page cannot retrieve.
[[nodiscard]] bool MeasurePageRefresh(int rounds, HidLibrary& library);

}  // namespace quillon::bench
