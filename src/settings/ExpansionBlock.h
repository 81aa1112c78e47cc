// SPDX-License-Identifier: MIT
#pragma once

#include "settings/Field.h"

// The block behind the "Expansion Port" page: one record of 2 bytes.
//
//          bit 7     6     5     4     3     2     1      0
//            +-----+-----+-----+-----+-----+-----+-----+--------+
//   byte 0   |          unused, always sent as 0       | active |
//            +-----+-----+-----+-----+-----+-----+-----+--------+
//   byte 1   |            module code, from 1                   |
//            +-----+-----+-----+-----+-----+-----+-----+--------+
//
//   01 04: the port is on, with module 4.
namespace quillon::expansion {

inline constexpr std::uint8_t kRead = 0x14;
inline constexpr std::uint8_t kWrite = 0x10;

inline constexpr Field kActive{0, 0, 1}, kUnused{0, 1, 7}, kModule{1, 0, 8};

}  // namespace quillon::expansion
