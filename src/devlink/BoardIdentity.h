// SPDX-License-Identifier: MIT
#pragma once

#include <cstdint>
#include <string>

#include "devlink/DeviceTable.h"

namespace quillon {

// Which board of a table is meant, in a form that outlives the table: a detection makes it anew,
// with new numbers of the library in the records.
//
// A board is known again by what it says of itself and the mode it runs in, byte for byte. Boards
// that say the same are told apart by their order, which is that of their places on the bus. Once
// one of them comes or goes nothing tells which one that was, so then none of them is known again.
struct BoardIdentity {
  std::uint32_t type = 0;
  std::uint16_t product_id = 0;
  std::string product_text, manufacturer, serial_number;
  std::uint32_t place = 0;  // among the boards that are alike, from 0
  std::uint32_t alike = 0;  // how many those are; 0: no board

  bool operator==(const BoardIdentity&) const = default;
};

// The board that is selected; the same as no other where there is none.
BoardIdentity CurrentBoard(const DeviceTable& table);

}  // namespace quillon
