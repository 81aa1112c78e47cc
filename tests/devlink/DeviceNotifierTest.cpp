// SPDX-License-Identifier: MIT
#include <gmock/gmock.h>

#include "devlink/DeviceNotifier.h"

namespace quillon {
namespace {

TEST(DeviceNotifier, OnlyTheVendorsBoardsCount) {
  struct Case {
    std::uint32_t event, type;
    const char* path;
    bool counts;
  };
  const Case cases[] = {
      {0x8000, 5, R"(\\?\USB#VID_4C7E&PID_0910#001#{A5DCBF10})", true},
      {0x8004, 5, R"(\\?\USB#VID_4C7E&PID_0910#001#{A5DCBF10})", true},
      {0x8000, 5, R"(\\?\usb#vid_4c7e&pid_0910#001)", true},
      {0x8000, 5, "Vid_4c7E", true},
      {0x8000, 5, R"(\\?\USB#VID_4C7F&PID_4C7E#001)", false},
      {0x8000, 5, R"(\\?\USB#PID_4C7E&VID_0910#VID_4C7)", false},
      {0x8000, 5, "", false},
      {0x8001, 5, "VID_4C7E", false},
      {0x8003, 5, "VID_4C7E", false},
      {0x0007, 5, "VID_4C7E", false},
      {0x8000, 2, "VID_4C7E", false},
      {0x8004, 3, "VID_4C7E", false},
  };
  for (const Case& c : cases) {
    EXPECT_EQ(IsBoardChange(c.event, c.type, c.path), c.counts)
        << std::hex << c.event << ' ' << c.type << ' ' << c.path;
  }
}

}  // namespace
}  // namespace quillon
