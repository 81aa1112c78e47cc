// SPDX-License-Identifier: MIT
#pragma once

#include <array>
#include <bitset>
#include <cstddef>
#include <cstdint>

namespace quillon {

// Nodes that the bus of a node I/O system's board carries at most.
inline constexpr std::size_t kBoardNodes = 12;

// How the firmware of an active node compares with what is required and the newest online.
enum class NodeUpdateStatus { kOk, kUpdateRequired, kUpdateAvailableOnline, kIncompatible };

// A node as its board last described it.
struct NodeRecord {
  // The version word of a node that reports none, or that has no firmware.
  static constexpr std::uint16_t kNoVersion = 0xFFFF;

  std::uint8_t status = 0;
  std::uint16_t loader_version = kNoVersion;
  std::uint16_t flash_version = kNoVersion;
  // As judged when the board described the node, or when it was programmed.
  NodeUpdateStatus firmware = NodeUpdateStatus::kUpdateRequired;

  // Every status but 1 is that of a node that is absent.
  bool IsActive() const { return status == 1; }
  // Also of an absent node, of whose firmware nothing is known.
  bool UpdateRequired() const {
    return !IsActive() || (firmware != NodeUpdateStatus::kOk &&
                           firmware != NodeUpdateStatus::kUpdateAvailableOnline);
  }
  bool operator==(const NodeRecord&) const = default;
};

// In the order of the bus: node 0 is shown as node 1.
using NodeRecords = std::array<NodeRecord, kBoardNodes>;

// Some of a board's nodes.
using NodeSelection = std::bitset<kBoardNodes>;

// What a board said of its nodes.
struct BoardNodes {
  NodeRecords records;
  bool known = false;  // it has said something; until then all nodes count as absent
  // Those that are checked in the list of nodes. Only their ports are read and written, and only
  // they are updated. The active ones, until the user checks others.
  NodeSelection checked;
};

}  // namespace quillon
