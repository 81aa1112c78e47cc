// SPDX-License-Identifier: MIT
#pragma once

#include <cstdint>
#include <vector>

#include "boards/Board.h"

namespace quillon::sim {

// The vendor's ids on the USB and HID side. A board's configuration interface is the HID interface
// whose top-level collection has this usage page (HID Usage Tables: vendor-defined); the usage is
// the device type, 1 to 3.
inline constexpr std::uint16_t kUsbVendor = 0x4C7E;
inline constexpr std::uint16_t kConfigurationPage = 0xFF4C;

// A HID interface of a board as a host sees it.
struct HidInterface {
  bool configuration = false;                   // takes requests; else it is for games
  std::vector<std::uint8_t> report_descriptor;  // USB HID 1.11, 6.2.2
};

// The interfaces of a board in its present mode, by their USB interface number. A board with axes
// that runs its firmware has the interface for games first and the configuration interface second.
// All other boards have the configuration interface alone.
std::vector<HidInterface> HidInterfacesOf(const Board& board);

}  // namespace quillon::sim
