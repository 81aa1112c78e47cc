// SPDX-License-Identifier: MIT
#pragma once

#include "settings/Field.h"

// The two blocks behind the "Digital Channels" page of the scan matrix controller. Both are ranges
// of the board's table and travel in chunks. `_` marks bits that are kept as retrieved.
//
// Input block: 64 bytes, one for each input. Invert and master have swapped places compared with
// the joystick controllers' digital block, and the codes of the modes are this board's own.
//
//          bit 7     6     5     4     3      2        1       0
//            +-----+-----+-----+-----+-----+--------+--------+----+
//   byte 0   |      mode 0..2        |  _  | master | invert | on |
//            +-----+-----+-----+-----+-----+--------+--------+----+
//
//   23: on, inverted, rotary.
//
// Pair block: 32 records of 3 bytes, one for each pair of inputs 1-2, 3-4 and so on.
//
//            +-----+-----+-----+-----+-----+-----+-----+-----+
//   byte 0   |        _        |hold | encoder decoding 0..3 |
//            +-----+-----+-----+-----+-----+-----+-----+-----+
//   byte 1   |        push button 1..64, 0 = none            |
//            +-----+-----+-----+-----+-----+-----+-----+-----+
//   byte 2   |        pull button 1..64, 0 = none            |
//            +-----+-----+-----+-----+-----+-----+-----+-----+
//
//   12 03 00: GRAY 2X, hold, push presses button 3.
namespace quillon {

namespace matrix_input {

inline constexpr std::uint8_t kRead = 0x12;
inline constexpr std::uint8_t kWrite = 0x0E;
inline constexpr std::uint8_t kStart = 0x08;
inline constexpr std::uint8_t kEnd = 0x48;

inline constexpr Field kOn{0, 0, 1}, kInvert{0, 1, 1}, kMaster{0, 2, 1}, kMode{0, 4, 4};

}  // namespace matrix_input

namespace matrix_pair {

inline constexpr std::uint8_t kRead = 0x17;
inline constexpr std::uint8_t kWrite = 0x18;
inline constexpr std::uint8_t kStart = 0x48;
inline constexpr std::uint8_t kEnd = 0xA8;

inline constexpr Field kEncoder{0, 0, 4}, kHold{0, 4, 1}, kPush{1, 0, 8}, kPull{2, 0, 8};

}  // namespace matrix_pair

}  // namespace quillon
