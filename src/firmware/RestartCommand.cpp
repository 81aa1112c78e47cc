// SPDX-License-Identifier: MIT
#include "firmware/RestartCommand.h"

#include "devlink/Exchange.h"
#include "kvusb/HidPacket.h"

namespace quillon {
namespace {

std::uint8_t ToFlashMode(std::uint32_t type) {
  return type == KVUSB_TYPE_LOADER ? kRestartSameMode : kRestartOtherMode;
}

// Whether a board of this type counts as one that runs its firmware.
bool IsInDeviceMode(std::uint32_t type, const Product& product) {
  return type == product.device_mode || (product.restarts_alike && type != KVUSB_TYPE_LOADER);
}

}  // namespace

std::uint8_t RestartCommand(RestartButton button, std::uint32_t type, const Product& product) {
  const bool in_device_mode = IsInDeviceMode(type, product);
  switch (button) {
    case RestartButton::kFlash:
      return ToFlashMode(type);
    case RestartButton::kDevice:
    case RestartButton::kExecute:
      return in_device_mode ? kRestartSameMode : kRestartOtherMode;
    case RestartButton::kReboot:
      // Intended for the SPI controller too, whose Device Mode has a type of its own: "Reboot"
      // keeps a board in its mode, and the other command would send it into its loader.
      return in_device_mode ? kRestartSameMode : ToFlashMode(type);
  }
  return kRestartSameMode;
}

void SendRestart(HidLibrary& library, DeviceRecord& board, std::uint8_t command) {
  HidPacket packet{};
  packet[kCommandByte] = command;
  static_cast<void>(SendPacket(library, board, packet));
}

}  // namespace quillon
