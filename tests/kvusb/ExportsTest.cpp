// SPDX-License-Identifier: MIT
#include <gtest/gtest.h>

#include <stdexcept>

#include "kvusb/AccessLibrary.h"

extern "C" std::int32_t KVUSB_CALL CloseDevices(std::uint32_t count, DeviceRecord* first);
extern "C" std::int32_t KVUSB_CALL DescribeProblem(const DeviceRecord*, char*, std::uint32_t size);

quillon::AccessLibrary& quillon::TheLibrary() { throw std::runtime_error("no bus"); }

TEST(Exports, TellWhyTheLibraryCannotBeMadeAndCloseNothing) {
  char text[40] = "untouched";
  EXPECT_NE(CloseDevices(0, nullptr), 0);
  EXPECT_EQ(DescribeProblem(nullptr, text, sizeof text), KVUSB_PROBLEM_OTHER);
  EXPECT_STREQ(text, "The HID library failed: no bus.");
}
