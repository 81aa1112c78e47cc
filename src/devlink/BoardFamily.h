// SPDX-License-Identifier: MIT
#pragma once

#include <cstdint>

namespace quillon {

// What a board is, told by its USB product id; chooses the pages that are shown for it.
enum class BoardFamily {
  kNone,           // an id of no family: the home page
  kJoystick,       // joystick controller with expansion port
  kSmallJoystick,  // joystick controller without expansion port
  kScanMatrix,     // scan-matrix digital inputs and expansion port
  kDigitalPorts,   // digital ports controller
  kInputBanks,     // digital ports controller, second variant
  kNodeSystem,     // node I/O system
  kSpi,            // SPI controller
  kWithoutPages,   // a known board that has no pages, not even the home page
};

// The node I/O system whose nodes the device tree lists.
inline constexpr std::uint16_t kNodeSystemProduct = 0x0800;

BoardFamily FamilyOf(std::uint16_t product_id);

}  // namespace quillon
