// SPDX-License-Identifier: MIT
#pragma once

#include "settings/Field.h"

// The two blocks behind the "Analog Channels" page. `_` marks bits that are kept as retrieved.
//
// Analog block: 8 records of 3 bytes, one for each analog input.
//
//          bit 7     6     5     4     3     2        1       0
//            +-----+-----+-----+-----+-----+--------+-------+----+
//   byte 0   |      filter 0..10     |  _  | invert | spike | on |
//            +-----+-----+-----+-----+-----+--------+-------+----+
//   byte 1   |           _           |  resolution, bits - 1     |
//            +-----+-----+-----+-----+-----+--------+-------+----+
//   byte 2   | S2  | S1  | Rz  | Ry  | Rx  |   Z    |   Y   | X  |
//            +-----+-----+-----+-----+-----+--------+-------+----+
//
//   51 0B 01: on, filter 5, 12 bits, drives the X axis.
//
// Encoder block: 7 records of 3 bytes, six absolute encoders (AE SSI) and the incremental channel.
//
//   byte 0   | resolution, bits - 1  |  _  | invert | increm.| on |
//   byte 1   |        _        |     centering button, 0 = none   |
//   byte 2   | S2  | S1  | Rz  | Ry  | Rx  |   Z    |   Y   | X  |
//
//   B5 03 20: on, invert, 12 bits, centred by button 3, drives the Rz axis.
namespace quillon {

inline constexpr std::size_t kAxes = 8;

namespace analog {

inline constexpr std::uint8_t kRead = 0x11;
inline constexpr std::uint8_t kWrite = 0x0D;

inline constexpr Field kOn{0, 0, 1}, kSpike{0, 1, 1}, kInvert{0, 2, 1}, kFilter{0, 4, 4};
inline constexpr Field kResolution{1, 0, 4};

}  // namespace analog

namespace encoder {

inline constexpr std::uint8_t kRead = 0x15;
inline constexpr std::uint8_t kWrite = 0x16;

inline constexpr Field kOn{0, 0, 1}, kIncremental{0, 1, 1}, kInvert{0, 2, 1};
inline constexpr Field kResolution{0, 4, 4}, kCentering{1, 0, 5};

}  // namespace encoder

// The bit that lets a channel of either block drive axis `axis`, 0 (X) to 7 (S2).
constexpr Field AxisBit(std::size_t axis) { return {2, static_cast<std::uint8_t>(axis), 1}; }

}  // namespace quillon
