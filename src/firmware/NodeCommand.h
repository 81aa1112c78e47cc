// SPDX-License-Identifier: MIT
#pragma once

#include <cstddef>
#include <cstdint>

#include "kvusb/HidPacket.h"

// Commands that a board hands on to a node:
//
//    0   1        2         3          4      5   6          7      8   9 ..
//   +---+--------+---------+----------+------+---+----------+------+---+--------+
//   | 0 | length | address | address  | 0x1C | 0 | function | node | 0 | data   |
//   |   |        | low     | high     |      |   |          |      |   |        |
//   +---+--------+---------+----------+------+---+----------+------+---+--------+
//
// Nodes are counted from 0.
namespace quillon {

inline constexpr std::uint8_t kNodeCommand = 0x1C;
inline constexpr std::size_t kNodeFunctionByte = kPayloadByte;
inline constexpr std::size_t kNodeByte = 7;
inline constexpr std::size_t kNodeDataByte = 9;

// A command without length, address and data.
inline HidPacket NodeCommandOf(std::uint8_t function, std::size_t node) {
  HidPacket packet{};
  packet[kCommandByte] = kNodeCommand;
  packet[kNodeFunctionByte] = function;
  packet[kNodeByte] = static_cast<std::uint8_t>(node);
  return packet;
}

}  // namespace quillon
