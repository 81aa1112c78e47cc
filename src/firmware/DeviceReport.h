// SPDX-License-Identifier: MIT
#pragma once

#include <cstdint>
#include <optional>
#include <string>

#include "firmware/NodeStatus.h"
#include "kvusb/kvusb.h"

namespace quillon {

// How a board's firmware compares, by release, with the one that this program works with.
enum class FirmwareFit {
  kMatches,
  kTooOld,  // or the board says that it holds no valid firmware
  kTooNew,  // newer than this program knows
};

// What a board of the node I/O system said of its nodes.
struct NodeFindings {
  NodeStatusAnswer answer = NodeStatusAnswer::kNone;
  bool any_needs_update = false;  // of the active ones, as far as the board ever told
};

// What the "Device Configuration" page says of a board, and what follows for its controls.
struct DeviceReport {
  std::string text;
  std::string serial_number;
  FirmwareFit fit = FirmwareFit::kMatches;
  bool flash_mode_active = false;  // the board is not in its family's Device Mode
  bool pages_enabled = false;      // in Device Mode, and neither board nor nodes need an update
  bool firmware_present = true;    // the board's own word
};

// Reports on a board of type `type`. `device_mode` is the type that counts as Device Mode in the
// board's family: 2, or 3 where boards answer the identity query. Any other type is treated as
// Flash Mode, but only type 1 is shown as a loader. `nodes` is for boards of the node I/O system.
DeviceReport ReportOnDevice(const DeviceRecord& record, std::uint32_t type,
                            std::uint32_t device_mode,
                            const std::optional<NodeFindings>& nodes = std::nullopt);

// What is shown in place of a report when no board was found. The node I/O system has a form of its
// own.
std::string EmptyDeviceReport(bool of_node_system);

}  // namespace quillon
