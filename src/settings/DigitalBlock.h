// SPDX-License-Identifier: MIT
#pragma once

#include "settings/Field.h"

// The block behind the "Digital Channels" page of the joystick controllers: 16 records of 3 bytes,
// one for each input. `_` marks bits that are kept as retrieved.
//
//          bit 7     6     5     4     3     2        1        0
//            +-----+-----+-----+-----+-----+--------+--------+----+
//   byte 0   |      mode 0..4        |  _  | invert | master | on |
//            +-----+-----+-----+-----+-----+--------+--------+----+
//   byte 1   |           pulse width in units of 10 ms            |
//            +-----+-----+-----+-----+-----+--------+--------+----+
//   byte 2   |           _           |     encoder decoding 0..3  |
//            +-----+-----+-----+-----+-----+--------+--------+----+
//
//   21 19 00: on, pulse of 250 ms.
//   41 00 02: on, rotary, GRAY 2X; both inputs of an encoder carry its code.
//
// On boards with a scan matrix one byte stands in front of the block: 01 with the matrix on, else
// 00.
namespace quillon::digital {

inline constexpr std::uint8_t kRead = 0x12;
inline constexpr std::uint8_t kWrite = 0x0E;

inline constexpr Field kOn{0, 0, 1}, kMaster{0, 1, 1}, kInvert{0, 2, 1}, kMode{0, 4, 4};
inline constexpr Field kPulseWidth{1, 0, 8}, kEncoder{2, 0, 4};

inline constexpr Field kScanMatrix{0, 0, 1};

}  // namespace quillon::digital
