// SPDX-License-Identifier: MIT
#pragma once

#include <cstdint>
#include <string>

#include "devlink/DeviceTable.h"

namespace quillon {

// Identifies a board across detections, each of which fills the table anew, with new numbers of the
// library in the records.
//
// A board is recognised by its texts, its product id and the mode it runs in. Boards that are alike
// in all of these are told apart by their order in the table. When one of those comes or goes,
// nothing tells which one it was, so none of them is recognised then.
struct BoardIdentity {
  std::uint32_t type = 0;
  std::uint16_t product_id = 0;
  std::string product_text, manufacturer, serial_number;
  std::uint32_t place = 0;  // among the boards that are alike, from 0
  std::uint32_t alike = 0;  // how many those are; 0: no board

  bool operator==(const BoardIdentity&) const = default;
};

// The board that is selected. Without boards, an identity that no board has.
BoardIdentity CurrentBoard(const DeviceTable& table);

}  // namespace quillon
