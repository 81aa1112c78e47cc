// SPDX-License-Identifier: MIT
#pragma once

#include <cstring>
#include <string_view>

#include "devlink/DeviceTable.h"

namespace quillon::testing {

// Adds one board to a table, as a detection does.
inline void AddBoard(DeviceTable& table, std::uint32_t type, std::uint16_t product_id,
                     std::string_view name = "Board", std::string_view serial = "1") {
  DeviceRecord& record = table.Free().front();
  record = {};
  record.product_id = product_id;
  std::memcpy(record.product_text, name.data(), name.size());
  std::memcpy(record.serial_number, serial.data(), serial.size());
  table.Append(1, type);
}

}  // namespace quillon::testing
