// SPDX-License-Identifier: MIT
#pragma once

#include <cstdint>
#include <filesystem>
#include <optional>
#include <string>
#include <system_error>
#include <vector>

// What everybody may read in /sys about the vendor's boards: which boards there are, and of which
// type. No board has to be opened for that, so it works even where the user may open none.
//
//   /sys/class/hidraw/hidraw3 -> .../usb1/1-2/1-2:1.1/0003:4C7E:0910.0007/hidraw/hidraw3
//                                         the board |  HID device: bus, vendor, product, number
//                                                   USB interface
namespace quillon {

// A HID interface of one of our boards.
struct HidrawNode {
  std::string folder;  // of the node in /sys, without links
  std::string device;  // "/dev/hidraw3"
  std::string hid;     // "0003:4C7E:0910.0007", which the kernel gives to no other before a reboot
  std::uint16_t product_id = 0;       // USB idProduct
  std::optional<std::uint32_t> type;  // of a configuration interface; nothing for any other

  // Of a configuration interface only.
  std::string board;          // the physical board: its folder in /sys
  std::uint16_t release = 0;  // USB bcdDevice; 0 for a board that is not on USB
  std::string product_text;   // USB iProduct, iManufacturer, iSerialNumber as the kernel gives
  std::string manufacturer;   // them: UTF-8 from a board that means well
  std::string serial;
};

// The node of a folder such as /sys/class/hidraw/hidraw3; nothing if it is not one of our boards',
// is gone already or leaves while it is read.
std::optional<HidrawNode> ReadHidrawNode(const std::filesystem::path& folder);

// All nodes of our boards, by their number. HID interfaces of other makers cost one readlink each,
// and so do the nodes that are in `known` already: what was read about a node stays true as long as
// it is there. `error` tells why the kernel's list cannot be read. In another `sys` boards have no
// texts: udev knows the real one only.
std::vector<HidrawNode> ListHidrawNodes(std::error_code& error,
                                        const std::vector<HidrawNode>& known = {},
                                        const std::filesystem::path& sys = "/sys");

}  // namespace quillon
