// SPDX-License-Identifier: MIT
#include "devlink/DeviceTable.h"

#include <algorithm>

namespace quillon {

void DeviceTable::SetCurrent(std::uint32_t index) {
  if (index < count_) current_ = index;
}

void DeviceTable::Clear() {
  count_ = 0;
  current_ = 0;
  types_[0] = 0;
  records_[0].product_id = 0;
}

std::uint32_t DeviceTable::Append(std::uint32_t found, std::uint32_t type) {
  const std::uint32_t taken = std::min(found, kRoom - count_);
  for (std::uint32_t i = count_; i < count_ + taken; ++i) {
    types_[i] = type;
    records_[i].queried_version = 0;
    records_[i].firmware_present = 1;
  }
  count_ += taken;
  return taken;
}

}  // namespace quillon
