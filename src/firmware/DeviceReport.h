// SPDX-License-Identifier: MIT
#pragma once

#include <cstdint>
#include <string>

#include "kvusb/kvusb.h"

namespace quillon {

// How a board's firmware compares, by release, with the one that this program works with.
enum class FirmwareFit {
  kMatches,
  kTooOld,  // or the board says that it holds no valid firmware
  kTooNew,  // newer than this program knows
};

// What the "Device Configuration" page says of a board, and what follows for its controls.
struct DeviceReport {
  std::string text;
  std::string serial_number;
  FirmwareFit fit = FirmwareFit::kMatches;
  bool flash_mode_active = false;  // the board is not in its family's Device Mode
  bool pages_enabled = false;      // in Device Mode, with the release that is required
  bool firmware_present = true;    // the board's own word
};

// Reports on a board of type `type`. `device_mode` is the type that counts as Device Mode in the
// board's family: 2, or 3 where boards answer the identity query. Any other type is treated as
// Flash Mode, but only type 1 is shown as a loader.
DeviceReport ReportOnDevice(const DeviceRecord& record, std::uint32_t type,
                            std::uint32_t device_mode);

// What is shown in place of a report when no board was found.
std::string EmptyDeviceReport();

}  // namespace quillon
