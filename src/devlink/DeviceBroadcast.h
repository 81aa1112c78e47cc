// SPDX-License-Identifier: MIT
#pragma once

#include <cstdint>
#include <optional>
#include <span>
#include <string>

namespace quillon {

// What Windows tells a window about a device, in the terms of IsBoardChange().
struct DeviceBroadcast {
  std::uint32_t event = 0;
  std::uint32_t device_type = 0;
  std::string path;  // of a device interface; empty for devices of any other type
};

// Whether Windows sends a structure along with this event. With all others there is nothing to
// read, whatever the message's parameter holds.
bool HasBroadcast(std::uint32_t event);

// Reads the structure of an event, little-endian:
//
//     0  size of all of it   4  device type   8  reserved   12  class (16 bytes)   28  path
//
// Only a device interface (type 5) has the last two. Nothing where not even the type is there. The
// path ends at its zero or with the structure; what is not ASCII in it becomes '?'.
//
// The path is in wide characters for a Unicode window and in bytes for any other, and nothing in
// the structure says which. The text does: its first character is ASCII, so that a zero follows it
// only if it is wide.
std::optional<DeviceBroadcast> ReadDeviceBroadcast(std::uint32_t event,
                                                   std::span<const std::uint8_t> bytes);

}  // namespace quillon
