// SPDX-License-Identifier: MIT
#pragma once

#include <cstdint>

namespace quillon {

// What differs between the board families outside their settings pages.
struct FamilyTraits {
  std::uint32_t device_mode = 2;  // the device type that counts as Device Mode
  // The tabs behind "Device Configuration" that a report enables, [first, last]: in Device Mode
  // with suitable firmware, and in Flash Mode. first > last: none.
  int first_in_device_mode = 1, last_in_device_mode = 0;
  int first_in_flash_mode = 1, last_in_flash_mode = 0;
};

inline constexpr FamilyTraits kJoystickTraits{2, 1, 5};
inline constexpr FamilyTraits kSmallJoystickTraits{2, 1, 4};
inline constexpr FamilyTraits kScanMatrixTraits{2, 1, 2};
inline constexpr FamilyTraits kDigitalPortsTraits{2, 1, 1};
inline constexpr FamilyTraits kInputBanksTraits{2, 1, 1};
// The nodes' firmware is updated through a board whose own loader runs.
inline constexpr FamilyTraits kNodeSystemTraits{3, 3, 3, 1, 2};
inline constexpr FamilyTraits kSpiTraits{3, 1, 1};

}  // namespace quillon
