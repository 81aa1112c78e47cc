// SPDX-License-Identifier: MIT
#pragma once

#include <cstdint>

// How our boards are told from all others on the bus, whatever the system is.
namespace quillon {

inline constexpr std::uint16_t kUsbVendorId = 0x4C7E;

// The usage page of the top-level collection through which a board is configured; its usage is the
// device type (KVUSB_TYPE_...).
inline constexpr std::uint16_t kConfigurationUsagePage = 0xFF4C;

// Whether a usage of that page is a device type.
inline constexpr bool IsDeviceType(std::uint16_t usage) { return usage >= 1 && usage <= 3; }

}  // namespace quillon
