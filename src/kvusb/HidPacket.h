// SPDX-License-Identifier: MIT
#pragma once

#include <array>
#include <cstdint>
#include <span>

#include "kvusb/kvusb.h"

namespace quillon {

// The buffer of every exchange: the request, then, written over it, the answer. kvusb.h draws both.
using HidPacket = std::array<std::uint8_t, KVUSB_PACKET_BYTES>;

// A packet where it stands.
using PacketSpan = std::span<std::uint8_t, KVUSB_PACKET_BYTES>;

// Places in a request.
inline constexpr std::size_t kLengthByte = 1;
inline constexpr std::size_t kStartByte = 2;
inline constexpr std::size_t kEndByte = 3;
inline constexpr std::size_t kCommandByte = 4;
inline constexpr std::size_t kArgumentByte = 5;
inline constexpr std::size_t kPayloadByte = 6;

// Places in an answer.
inline constexpr std::size_t kEchoByte = 0;
inline constexpr std::size_t kDataByte = 1;

// Value of the argument byte of a command that writes settings.
inline constexpr std::uint8_t kWriteArgument = 1;

// Whether the request erases the flash of a board, or through it of a node. Its answer takes
// seconds.
inline bool IsErase(PacketSpan packet) {
  constexpr std::uint8_t kErase = 8;
  constexpr std::uint8_t kOfNode = 0x1C;
  return packet[kCommandByte] == kErase ||
         (packet[kCommandByte] == kOfNode && packet[kPayloadByte] == kErase);
}

// The identity query, answered by boards of type 1 and 3.
inline constexpr std::uint8_t kIdentityQuery = 6;

}  // namespace quillon
