// SPDX-License-Identifier: MIT
#pragma once

#include <span>

#include "settings/Setting.h"

// The settings of the two boards that carry digital inputs only. `_` marks bits that are kept as
// retrieved.
//
// The digital ports controller has one block of 18 bytes: the master switch, then a word for each
// of its 8 ports.
//
//          bit 7     6     5     4     3     2      1      0
//            +-----+-----+-----+-----+-----+-----+--------+----+
//   byte 0   |          master switch, low byte                |
//            +-----+-----+-----+-----+-----+-----+--------+----+
//   byte 1   |          master switch, high byte; 0 = none     |
//            +=====+=====+=====+=====+=====+=====+========+====+
//   byte 2   |       mode 0..3       |  _  |  _  | invert | on |   of port 1, and so on
//            +-----+-----+-----+-----+-----+-----+--------+----+
//   byte 3   |           _           | rotary decoding 0..3    |
//            +-----+-----+-----+-----+-----+-----+--------+----+
//
//   05 00 21 02: input 5 is the master switch; port 1 is on, rotary, GRAY 2X.
//
// The board with banks of 32 inputs has two. The header stands for itself and is written without a
// look at the answer:
//
//            +-----+-----+-----+-----+-----+-----+-----+-----+
//   byte 0   |          master switch, bits 0..7             |
//            +-----+-----+-----+-----+-----+-----+-----+-----+
//   byte 1   |      bank 0..15       | master, bits 8..11    |
//            +-----+-----+-----+-----+-----+-----+-----+-----+
//
//   05 20: input 5 is the master switch; bank 2, the inputs 65 to 96.
//
// The inputs are a range of the board's table, 32 records of 3 bytes:
//
//            +-----+-----+-----+-----+-----+-----+--------+----+
//   byte 0   |       mode 0..4       |  _  |  _  | invert | on |
//            +-----+-----+-----+-----+-----+-----+--------+----+
//   byte 1   |           pulse width in units of 10 ms         |
//            +-----+-----+-----+-----+-----+-----+--------+----+
//   byte 2   |           _           | rotary decoding 0..3    |
//            +-----+-----+-----+-----+-----+-----+--------+----+
//
//   23 19 00: on, inverted, pulse of 250 ms.
//   41 00 02: on, rotary, GRAY 2X; both inputs of an encoder carry its code.
namespace quillon {

std::span<const Page> DigitalPortPages();
std::span<const Page> InputBankPages();

// How many inputs a bank has. Those of bank n are called n * 32 + 1 and so on.
inline constexpr int kInputsOfBank = 32;

}  // namespace quillon
