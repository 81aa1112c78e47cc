// SPDX-License-Identifier: MIT
#pragma once

#include <cstdint>

#include "devlink/DeviceTable.h"
#include "kvusb/HidLibrary.h"

namespace quillon {

// What a detection of one type found. If more are reported than listed, the table is full.
struct Detected {
  std::uint32_t reported = 0;
  std::uint32_t listed = 0;
};

// Appends the boards of one type to the table and asks those of type 1 and 3 for their identity. A
// board that does not answer stays in the table, with version 0 and firmware flag 1. A problem that
// the library reports for a board goes into the table too.
Detected DetectBoards(HidLibrary& library, DeviceTable& table, std::uint32_t type);

// Closes all boards of the table. False when the library reports a failure.
[[nodiscard]] bool CloseBoards(HidLibrary& library, DeviceTable& table);

}  // namespace quillon
