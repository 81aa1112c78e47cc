// SPDX-License-Identifier: MIT
#pragma once

#include <cstdint>

#include "devlink/DeviceTable.h"
#include "kvusb/HidLibrary.h"

namespace quillon {

// What a detection of one type found. More reported than listed: the table is full.
struct Detected {
  std::uint32_t reported = 0;
  std::uint32_t listed = 0;
};

// Appends the boards of one type to the table and asks those of type 1 and 3 for their identity. A
// board that does not answer is kept, with the version 0 and the firmware flag 1. What the library
// says against a board goes into the table.
Detected DetectBoards(HidLibrary& library, DeviceTable& table, std::uint32_t type);

// Closes all boards of the table. False when the library says that it failed.
[[nodiscard]] bool CloseBoards(HidLibrary& library, DeviceTable& table);

}  // namespace quillon
