// SPDX-License-Identifier: MIT
#pragma once

#include <algorithm>
#include <cstdint>
#include <vector>

#include "firmware/KvxImage.h"

namespace quillon {

// A record with these data at this address.
inline KvxRecord RecordAt(std::uint16_t address, const std::vector<std::uint8_t>& data,
                          std::uint8_t type = 0) {
  KvxRecord record;
  record.length = static_cast<std::uint8_t>(data.size());
  record.address_low = static_cast<std::uint8_t>(address & 0xFF);
  record.address_high = static_cast<std::uint8_t>(address >> 8);
  record.type = type;
  std::ranges::copy(data, record.data.begin());
  return record;
}

}  // namespace quillon
