// SPDX-License-Identifier: MIT
#pragma once

#include "settings/Field.h"

// The block behind the "Axis Tweaking" page: 8 records of 4 bytes, one for each axis, X first.
// `_` marks bits that are kept as retrieved.
//
//          bit 7     6     5     4     3     2       1          0
//            +-----+-----+-----+-----+-----+-----+-----------+--------+
//   byte 0   |        _        |   combine axis  | calibrate | active |
//            +-----+-----+-----+-----+-----+-----+-----------+--------+
//   byte 1   |                  trim min, percent                     |
//            +-----+-----+-----+-----+-----+-----+-----------+--------+
//   byte 2   |                  dead zone, percent                    |
//            +-----+-----+-----+-----+-----+-----+-----------+--------+
//   byte 3   |                  trim max, percent                     |
//            +-----+-----+-----+-----+-----+-----+-----------+--------+
//
//   0D 05 0A 64: active, combined with Rx, trims 5 % and 100 %, dead zone 10 %.
namespace quillon {

namespace tweak {

inline constexpr std::uint8_t kRead = 0x22;
inline constexpr std::uint8_t kWrite = 0x23;

// kCalibrate is shown as the board reports it, and always sent as 0.
inline constexpr Field kActive{0, 0, 1}, kCalibrate{0, 1, 1}, kCombine{0, 2, 3};
inline constexpr Field kTrimMin{1, 0, 8}, kDeadzone{2, 0, 8}, kTrimMax{3, 0, 8};

}  // namespace tweak

// The calibration of one axis, held by the board from kBegin to one of the closing commands. Each
// request carries the axis in its first payload byte and no argument.
//
//   payload of kManual   | axis | min | min | cen | cen | max | max |   low byte first
//   answer to kBegin            | min | min | cen | cen | max | max |
//
//   00 | 00 04 | 00 80 | 00 FC: the X axis from 1024 over 32768 to 64512.
namespace calibration {

inline constexpr std::uint8_t kBegin = 0x30;   // or read again while it is under way
inline constexpr std::uint8_t kAccept = 0x31;  // closes and stores what was measured
inline constexpr std::uint8_t kCancel = 0x32;  // closes and stores nothing
inline constexpr std::uint8_t kManual = 0x33;  // closes and stores the values given

}  // namespace calibration

}  // namespace quillon
