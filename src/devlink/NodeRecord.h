// SPDX-License-Identifier: MIT
#pragma once

#include <array>
#include <cstddef>
#include <cstdint>

namespace quillon {

// Nodes that the bus of a node I/O system's board carries at most.
inline constexpr std::size_t kBoardNodes = 12;

// A node as its board last described it.
struct NodeRecord {
  // The version word of a node that reports none, or that has no firmware.
  static constexpr std::uint16_t kNoVersion = 0xFFFF;

  std::uint8_t status = 0;
  std::uint16_t loader_version = kNoVersion;
  std::uint16_t flash_version = kNoVersion;
  // Also of an absent node, of whose firmware nothing is known.
  bool update_required = true;

  // Every status but 1 is that of a node that is absent.
  bool IsActive() const { return status == 1; }
  bool operator==(const NodeRecord&) const = default;
};

// In the order of the bus: node 0 is shown as node 1.
using NodeRecords = std::array<NodeRecord, kBoardNodes>;

}  // namespace quillon
