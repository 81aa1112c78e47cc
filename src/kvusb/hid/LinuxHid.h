// SPDX-License-Identifier: MIT
#pragma once

#include <filesystem>
#include <string>
#include <vector>

#include "hidraw/HidrawList.h"
#include "kvusb/hid/HidSystem.h"

namespace quillon {

// Boards on Linux: found in the list that everybody may read, used through hidapi. Its numbers are
// errno's.
//
// Listing opens no board: that takes the kernel 50 ms for each board on USB.
class LinuxHid : public HidSystem {
 public:
  explicit LinuxHid(std::filesystem::path sys = "/sys");
  ~LinuxHid() override;

  HidListing List() override;
  OpenedHid Open(const std::string& device) override;
  int MayOpen(const std::string& device) override;
  Problem Explain(const std::string& device, int error) const override;

 private:
  std::filesystem::path sys_;
  std::vector<HidrawNode> known_;  // as last listed
};

}  // namespace quillon
