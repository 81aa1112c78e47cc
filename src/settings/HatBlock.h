// SPDX-License-Identifier: MIT
#pragma once

#include "settings/Field.h"

// The block behind the "HAT Channels" page: 2 records of 2 bytes, one for each HAT connector, with
// the damping of eight output channels of the companion products beside it. `_` marks bits that
// are kept as retrieved.
//
//          bit 7     6     5     4     3     2     1     0
//            +-----+-----+-----+-----+-----+-----+-----+-----+
//   byte 0   |           _           |      mode       | on  |
//            +-----+-----+-----+-----+-----+-----+-----+-----+
//   byte 1   | channel 4 | channel 3 | channel 2 | channel 1 |   HAT 1; 8, 7, 6, 5 for HAT 2
//            +-----+-----+-----+-----+-----+-----+-----+-----+
//
//   09 AA: on, FALCO, channels 1 to 4 damped MID (2).
namespace quillon::hat {

inline constexpr std::uint8_t kRead = 0x13;
inline constexpr std::uint8_t kWrite = 0x0F;

inline constexpr Field kOn{0, 0, 1}, kMode{0, 1, 3}, kAllDamping{1, 0, 8};

}  // namespace quillon::hat
