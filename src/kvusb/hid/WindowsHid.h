// SPDX-License-Identifier: MIT
#pragma once

#include <cstdint>
#include <optional>
#include <string>
#include <vector>

#include "kvusb/hid/HidSystem.h"

namespace quillon {

// Boards on Windows: listed by its device manager, described and used through its HID driver. Its
// numbers are GetLastError()'s.
//
// Windows has one device for each top-level collection of an interface. Looking at one of them
// opens it for no access, which works whoever holds it, but asks the board for its texts; so what
// was read is kept for as long as the board stays.
class WindowsHid : public HidSystem {
 public:
  HidListing List() override;
  OpenedHid Open(const std::string& device) override;
  int MayOpen(const std::string& device) override;
  Problem Explain(const std::string& device, int error) const override;

  // A device of one of our boards, as the device manager lists it.
  struct Entry {
    std::string device;
    std::uint64_t arrival = 0;  // when it came; 0 where the system does not tell, as Wine does not
  };

 private:
  struct Known {
    Entry entry;
    std::optional<HidNode> node;  // of a configuration interface only
    bool whole = true;            // whether the board gave all of its texts
  };

  static std::optional<Known> Look(const Entry& entry);

  std::vector<Known> known_;  // as last listed, where that will do for the next time
};

}  // namespace quillon
