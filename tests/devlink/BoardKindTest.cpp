// SPDX-License-Identifier: MIT
#include <gmock/gmock.h>

#include <map>

#include "devlink/BoardFamily.h"
#include "devlink/DeviceNotifier.h"

namespace quillon {
namespace {

TEST(BoardFamily, IsToldByTheProductId) {
  using enum BoardFamily;
  const std::map<std::uint16_t, BoardFamily> families{
      {0x0910, kJoystick},      {0x1000, kJoystick},     {0x0920, kSmallJoystick},
      {0x1010, kSmallJoystick}, {0x0710, kScanMatrix},   {0x1300, kScanMatrix},
      {0x0510, kDigitalPorts},  {0x1100, kDigitalPorts}, {0x0520, kInputBanks},
      {0x1110, kInputBanks},    {0x0800, kNodeSystem},   {0x1200, kNodeSystem},
      {0x1400, kSpi},           {0x1500, kSpi},          {0x1600, kWithoutPages},
      {0x1700, kWithoutPages},
  };
  // All other ids are nobody's.
  for (unsigned id = 0; id <= 0xFFFF; ++id) {
    const auto product = static_cast<std::uint16_t>(id);
    const auto family = families.find(product);
    ASSERT_EQ(FamilyOf(product), family == families.end() ? kNone : family->second)
        << std::hex << id;
  }
}

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
