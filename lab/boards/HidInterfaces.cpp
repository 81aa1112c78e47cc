// SPDX-License-Identifier: MIT
#include "boards/HidInterfaces.h"

#include "kvusb/kvusb.h"

namespace quillon::sim {
namespace {

// 64 bytes each way, no report numbers.
std::vector<std::uint8_t> ConfigurationDescriptor(std::uint32_t type) {
  return {
      0x06, 0x4C,
      0xFF,                                   // Usage Page (vendor 0xFF4C)
      0x09, static_cast<std::uint8_t>(type),  // Usage (device type)
      0xA1, 0x01,                             // Collection (Application)
      0x15, 0x00,
      0x26, 0xFF,
      0x00,  //   Logical Minimum 0, Maximum 255
      0x75, 0x08,
      0x95, 0x40,  //   Report Size 8, Count 64
      0x09, 0x10,
      0x81, 0x02,  //   Usage 0x10, Input (Data, Variable)
      0x09, 0x11,
      0x91, 0x02,  //   Usage 0x11, Output (Data, Variable)
      0xC0,        // End Collection
  };
}

std::vector<std::uint8_t> JoystickDescriptor() {
  return {
      0x05, 0x01, 0x09, 0x04,        // Usage Page (Generic Desktop), Usage (Joystick)
      0xA1, 0x01,                    // Collection (Application)
      0x15, 0x00, 0x26, 0xFF, 0x0F,  //   Logical Minimum 0, Maximum 4095
      0x75, 0x10, 0x95, 0x02,        //   Report Size 16, Count 2
      0x09, 0x30, 0x09, 0x31,        //   Usage X, Y
      0x81, 0x02,                    //   Input (Data, Variable)
      0xC0,                          // End Collection
  };
}

bool HasAxes(const Board& board) {
  switch (FamilyOf(board.Spec().product)) {
    case Family::kJoystick:
    case Family::kSmallJoystick:
    case Family::kScanMatrix:
      return board.Type() != KVUSB_TYPE_LOADER;
    default:
      return false;
  }
}

}  // namespace

std::vector<HidInterface> HidInterfacesOf(const Board& board) {
  std::vector<HidInterface> interfaces;
  if (HasAxes(board)) interfaces.push_back({false, JoystickDescriptor()});
  interfaces.push_back({true, ConfigurationDescriptor(board.Type())});
  return interfaces;
}

}  // namespace quillon::sim
