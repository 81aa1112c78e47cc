// SPDX-License-Identifier: MIT
#include <cstring>
#include <set>

#include "boards/HidInterfaces.h"
#include "kvusb/hid/HidFixture.h"

namespace quillon::testing {
namespace {

using ::testing::ElementsAre;
using ::testing::IsEmpty;

const Bytes kIdentity = {0, 0, 0, 0, 6};

TEST(HidBoards, AreListedByTypeWithTheirTextsAndOnceEach) {
  HidFixture fixture(R"({"id": "a", "product": "0x0910", "firmware": "2.82", "serial": "007"},
                    {"id": "b", "product": "0x0910", "firmware": "2.71", "mode": "flash",
                     "loader": "1.05"},
                    {"id": "c", "product": "0x0800", "firmware": "1.10", "serial": "009"},
                    {"id": "d", "product": "0x0510", "firmware": "2.30", "manufacturer": "Works"})");
  fixture.kernel.AddOthers(3);
  fixture.kernel.AddOthers(1, sim::kUsbVendor);  // no configuration interface
  fixture.Close();
  ASSERT_EQ(fixture.Detect(), 4U);
  EXPECT_THAT(fixture.types, ElementsAre(2, 2, 1, 3));
  EXPECT_EQ(fixture.table[0].product_id, 0x0910);
  EXPECT_EQ(fixture.table[0].version, 0x0282);
  EXPECT_STREQ(fixture.table[0].product_text, "Joystick Controller (simulated)");
  EXPECT_STREQ(fixture.table[0].manufacturer, "Quillon Devices");
  EXPECT_STREQ(fixture.table[0].serial_number, "007");
  EXPECT_STREQ(fixture.table[1].manufacturer, "Works");
  EXPECT_EQ(fixture.table[2].version, 0x0105);
  EXPECT_THAT(fixture.Ask(kReadHat, 1, 0), ElementsAre(0x13));
  EXPECT_THAT(fixture.Ask(kIdentity, 4, 2), ElementsAre(6, 0x02, 0x71, 1));
  EXPECT_THAT(fixture.Ask(kIdentity, 4, 3), ElementsAre(6, 0x01, 0x10, 1));
  EXPECT_EQ(fixture.Detect(), 4U) << "without a close between";
  EXPECT_THAT(fixture.Ask(kReadHat), ElementsAre(0x13));
}

TEST(HidBoards, OnlyARecordOfTheLastDetectionIsAnswered) {
  HidFixture fixture(kOneBoard);
  const DeviceRecord detected = fixture.table[0];
  EXPECT_EQ(fixture.Write({1, 0, 0, 0, 0x13}), KVUSB_WRITE_FAILED) << "a report number";
  EXPECT_NE(fixture.Close(), 0);
  EXPECT_NE(fixture.Close(), 0) << "twice";
  EXPECT_NE(fixture.hid.CloseDevices({}), 0);
  fixture.Detect();
  EXPECT_THAT(fixture.Ask(kReadHat), ElementsAre(0x13));
  EXPECT_EQ(fixture.packet[63], 0x5A) << "all of an answer";
  fixture.table[0] = detected;
  EXPECT_EQ(fixture.Write(kReadHat), KVUSB_WRITE_FAILED) << "a record from before";
  EXPECT_EQ(fixture.Read(), KVUSB_READ_FAILED);
  std::memset(&fixture.table[0], 0xFF, sizeof(DeviceRecord));
  EXPECT_EQ(fixture.Close(), 0) << "garbage";
  std::uint32_t found = 77;
  EXPECT_EQ(fixture.hid.DetectHID(found, fixture.table, 1), 0);
  EXPECT_EQ(found, 77U) << "no boards, no count";
}

TEST(HidBoards, ARestartedBoardIsFoundInItsOtherMode) {
  HidFixture fixture(kOneBoard);
  EXPECT_THAT(fixture.Ask({0, 0, 0, 0, 0xFF}), ElementsAre(0xFF));
  EXPECT_TRUE(fixture.kernel.IsRestartDue());
  ASSERT_TRUE(fixture.kernel.FinishRestarts());
  EXPECT_THAT(fixture.Ask(kReadHat), IsEmpty());
  EXPECT_NE(fixture.Close(), 0);
  EXPECT_EQ(fixture.Detect(), 1U);
  EXPECT_THAT(fixture.types, ElementsAre(1));
  EXPECT_THAT(fixture.Ask(kIdentity, 4), ElementsAre(6, 0x02, 0x82, 1));
}

// The digits of its serial number are what a board holds.
TEST(HidBoards, FiftyBoardsAnswerEachForItself) {
  std::string boards;
  for (int number = 10; number < 60; ++number) {
    const std::string digits = std::to_string(number);
    boards += (boards.empty() ? "" : ",") + ("{\"id\": \"b" + digits) + "\", \"serial\": \"1" +
              digits + "\", " + kJoystick + ", \"blocks\": {\"hat\": \"" + digits + " 00 00 00\"}}";
  }
  HidFixture fixture(boards);
  ASSERT_EQ(fixture.count, 50U);
  std::set<std::string> serials;
  for (std::size_t i = 0; i < fixture.count; ++i) {
    const std::string serial = fixture.table[i].serial_number;
    serials.insert(serial);
    EXPECT_THAT(fixture.Ask(kReadHat, 2, i),
                ElementsAre(0x13, std::stoi(serial.substr(1), nullptr, 16)));
  }
  EXPECT_EQ(serials.size(), 50U);
}

TEST(HidBoards, OpenedOnceByTheirFirstExchangeAndNotByDetection) {
  int opened = 0;
  const auto count = [&] {
    ++opened;
    return 0;
  };
  HidFixture fixture(kTwoBoards, {}, std::make_unique<KeptDoor>(count));
  EXPECT_EQ(opened, 0);
  fixture.Ask(kReadHat);
  fixture.Ask(kReadAnalog);
  fixture.Detect();
  fixture.Ask(kReadHat);
  EXPECT_EQ(opened, 1);
}

TEST(HidBoards, WhatHasLeftIsClosedByTheNextDetection) {
  HidFixture fixture(kTwoBoards);
  fixture.Ask(kReadHat, 1, 1);
  fixture.kernel.Unplug(1);
  const std::size_t unplugged = OpenFiles();
  EXPECT_EQ(fixture.Detect(), 1U);
  EXPECT_LT(OpenFiles(), unplugged);
}

}  // namespace
}  // namespace quillon::testing
