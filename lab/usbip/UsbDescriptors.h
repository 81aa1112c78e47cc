// SPDX-License-Identifier: MIT
#pragma once

#include <cstdint>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

#include "boards/WiredBoard.h"

namespace quillon::usbip {

using Bytes = std::vector<std::uint8_t>;

// A HID interface and its endpoints, both numbered by the interface: interface 0 has endpoint 1.
// Every interface has an interrupt IN endpoint, the configuration interface an interrupt OUT too.
struct UsbInterface {
  Bytes hid, report;  // descriptors
  bool configuration = false;
};

// All that a board tells a host about itself, as it stands on the bus (USB 2.0, 9.6; USB HID 1.11,
// 6.2). A board that restarts is described anew.
struct UsbDescriptors {
  Bytes device, configuration;
  std::vector<UsbInterface> interfaces;
  std::vector<Bytes> strings;  // by index; 0 lists the languages

  // What GET_DESCRIPTOR with these values answers; nothing where a board stalls.
  std::optional<Bytes> Find(std::uint8_t type, std::uint8_t index) const;
  // The same for a descriptor that is asked of an interface.
  std::optional<Bytes> FindOfInterface(std::uint8_t type, std::uint16_t interface) const;
};

UsbDescriptors Describe(const sim::WiredBoard& board);

// A string descriptor. The text is UTF-8; bytes that are none become U+FFFD. Of a long text only
// the first 126 UTF-16 units fit, and never half a pair of surrogates.
Bytes StringDescriptor(std::string_view text);

}  // namespace quillon::usbip
