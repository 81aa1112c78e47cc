// SPDX-License-Identifier: MIT
#include "devlink/DeviceNotifier.h"

#include <algorithm>
#include <string>

#include "kvusb/kvusb.h"

namespace quillon {

bool IsBoardChange(std::uint32_t event, std::uint32_t device_type, std::string_view path) {
  if (event != KVUSB_EVENT_ARRIVAL && event != KVUSB_EVENT_REMOVAL) return false;
  if (device_type != KVUSB_DEVICE_INTERFACE) return false;
  std::string upper(path);
  // Not std::toupper: a locale must not change which board this is.
  std::transform(upper.begin(), upper.end(), upper.begin(), [](char c) {
    return c >= 'a' && c <= 'z' ? static_cast<char>(c - 'a' + 'A') : c;
  });
  return upper.find("VID_4C7E") != std::string::npos;
}

}  // namespace quillon
