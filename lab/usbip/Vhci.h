// SPDX-License-Identifier: MIT
#pragma once

#include <filesystem>
#include <string>
#include <variant>
#include <vector>

#include "usbip/FileDescriptor.h"

namespace quillon::usbip {

// The virtual USB host controllers of the Linux kernel (module vhci_hcd). The kernel takes the
// conversation with a device from a socket that is written, by its number, to a file in sysfs. The
// device is on the bus until the other end of the socket is closed, in whatever way.
class Vhci {
 public:
  struct Attached {
    FileDescriptor socket;  // our end
    unsigned port = 0;
  };

  explicit Vhci(std::filesystem::path folder = "/sys/devices/platform/vhci_hcd.0")
      : folder_(std::move(folder)) {}

  // Puts a full-speed device on a free port, or says in a sentence what is in the way.
  std::variant<Attached, std::string> Attach() const;

 private:
  std::vector<unsigned> FreePortsOfAll() const;

  std::filesystem::path folder_;
};

}  // namespace quillon::usbip
