// SPDX-License-Identifier: MIT
#include <cstring>
#include <map>

#include "boards/HidInterfaces.h"
#include "kvusb/hid/HidBench.h"

namespace quillon::testing {
namespace {

using ::testing::ElementsAre;
using ::testing::IsEmpty;

const Bytes kReadHat = {0, 0, 0, 0, 0x13}, kReadAnalog = {0, 0, 0, 0, 0x11};
const Bytes kIdentity = {0, 0, 0, 0, 6};

TEST(HidBoards, AreListedByTypeWithTheirTextsAndOnceEach) {
  HidBench bench(R"({"id": "a", "product": "0x0910", "firmware": "2.82", "serial": "007"},
                    {"id": "b", "product": "0x0910", "firmware": "2.71", "mode": "flash",
                     "loader": "1.05"},
                    {"id": "c", "product": "0x0800", "firmware": "1.10", "serial": "009"},
                    {"id": "d", "product": "0x0510", "firmware": "2.30", "manufacturer": "Works"})");
  bench.kernel.AddOthers(3);
  bench.kernel.AddOthers(1, sim::kUsbVendor);  // no configuration interface
  bench.Close();
  ASSERT_EQ(bench.Detect(), 4U);
  EXPECT_THAT(bench.types, ElementsAre(2, 2, 1, 3));
  EXPECT_EQ(bench.table[0].product_id, 0x0910);
  EXPECT_EQ(bench.table[0].version, 0x0282);
  EXPECT_STREQ(bench.table[0].product_text, "Joystick Controller (simulated)");
  EXPECT_STREQ(bench.table[0].manufacturer, "Quillon Devices");
  EXPECT_STREQ(bench.table[0].serial_number, "007");
  EXPECT_STREQ(bench.table[1].manufacturer, "Works");
  EXPECT_EQ(bench.table[2].version, 0x0105);
  EXPECT_THAT(bench.Ask(kReadHat, 1, 0), ElementsAre(0x13));
  EXPECT_THAT(bench.Ask(kIdentity, 4, 2), ElementsAre(6, 0x02, 0x71, 1));
  EXPECT_THAT(bench.Ask(kIdentity, 4, 3), ElementsAre(6, 0x01, 0x10, 1));
  EXPECT_EQ(bench.Detect(), 4U) << "without a close between";
  EXPECT_THAT(bench.Ask(kReadHat), ElementsAre(0x13));
}

TEST(HidBoards, DetectionLeavesTheProgramsBytesAndThoseBehindTheRecordsAlone) {
  HidBench bench("{\"id\": \"a\", " + kJoystick + "}");
  std::memset(bench.table.data(), 0xA5, 2 * sizeof(DeviceRecord));
  bench.Detect();
  EXPECT_EQ(bench.table[0].queried_version, 0xA5A5);
  EXPECT_EQ(bench.table[0].firmware_present, 0xA5);
  EXPECT_EQ(bench.table[1].product_id, 0xA5A5);
  std::uint32_t found = 77;
  EXPECT_EQ(bench.hid.DetectHID(found, bench.table, 1), 0);
  EXPECT_EQ(found, 77U);
}

TEST(HidBoards, OnlyARecordOfADetectedBoardIsAnswered) {
  HidBench bench("{\"id\": \"a\", " + kJoystick + "}");
  const DeviceRecord detected = bench.table[0];
  const auto fails = [&] {
    Bytes packet(65);
    return bench.Ask(kReadHat).empty() && bench.wrote == KVUSB_WRITE_FAILED &&
           bench.hid.ReadData(bench.table[0], PacketSpan(packet)) == KVUSB_READ_FAILED;
  };
  ASSERT_FALSE(fails());
  for (const int garbage : {0x00, 0xFF}) {
    std::memset(&bench.table[0], garbage, sizeof(DeviceRecord));
    EXPECT_TRUE(fails());
    EXPECT_EQ(bench.Close(), 0);
  }
  bench.table[0] = detected;
  EXPECT_NE(bench.Close(), 0);
  EXPECT_TRUE(fails()) << "closed";
  EXPECT_NE(bench.Close(), 0) << "twice";
  EXPECT_NE(bench.hid.CloseDevices({}), 0);
  bench.Detect();
  EXPECT_FALSE(fails());
  bench.table[0] = detected;
  EXPECT_TRUE(fails()) << "a record from before";
}

TEST(HidBoards, AnExchangeTouchesBytes0To63AndRefusesReportNumbers) {
  HidBench bench("{\"id\": \"a\", " + kJoystick + "}");
  Bytes packet(65);
  packet[4] = 0x13;
  packet[64] = 0x77;
  const Bytes request = packet;
  EXPECT_EQ(bench.hid.WriteData(bench.table[0], PacketSpan(packet)), KVUSB_OK);
  EXPECT_EQ(packet, request);
  EXPECT_EQ(bench.hid.ReadData(bench.table[0], PacketSpan(packet)), KVUSB_OK);
  EXPECT_EQ(packet[63], 0x5A);
  EXPECT_EQ(packet[64], 0x77);
  packet[0] = 1;
  EXPECT_EQ(bench.hid.WriteData(bench.table[0], PacketSpan(packet)), KVUSB_WRITE_FAILED);
}

TEST(HidBoards, ARestartedBoardIsFoundInItsOtherMode) {
  HidBench bench("{\"id\": \"a\", " + kJoystick + "}");
  EXPECT_THAT(bench.Ask({0, 0, 0, 0, 0xFF}), ElementsAre(0xFF));
  EXPECT_TRUE(bench.kernel.IsRestartDue());
  ASSERT_TRUE(bench.kernel.FinishRestarts());
  EXPECT_THAT(bench.Ask(kReadHat), IsEmpty());
  EXPECT_NE(bench.Close(), 0);
  EXPECT_EQ(bench.Detect(), 1U);
  EXPECT_THAT(bench.types, ElementsAre(1));
  EXPECT_THAT(bench.Ask(kIdentity, 4), ElementsAre(6, 0x02, 0x82, 1));
}

TEST(HidBoards, FiftyBoardsAnswerEachForItself) {
  std::string boards;
  for (int i = 0; i < 50; ++i) {
    const std::string number = std::to_string(100 + i);
    boards += (i == 0 ? "" : ",") + ("{\"id\": \"b" + number) + "\", \"serial\": \"" + number +
              "\", " + kJoystick + ", \"blocks\": {\"hat\": \"" + std::to_string(10 + i) +
              " 00 00 00\"}}";
  }
  HidBench bench(boards);
  ASSERT_EQ(bench.count, 50U);
  std::map<std::string, int> serials;
  for (std::size_t i = 0; i < bench.count; ++i) {
    ++serials[bench.table[i].serial_number];
    EXPECT_EQ(
        bench.Ask(kReadHat, 2, i),
        (Bytes{0x13, static_cast<std::uint8_t>(std::stoi(std::to_string(10 + i), nullptr, 16))}));
  }
  EXPECT_EQ(serials.size(), 50U);
}

TEST(HidBoards, OpenedOnceByTheirFirstExchangeAndNotByDetection) {
  int opened = 0;
  HidOptions options;
  options.open = [&](const std::string& device) {
    ++opened;
    return OpenHid(device);
  };
  HidBench bench("{\"id\": \"a\", " + kJoystick + "}, {\"id\": \"b\", " + kJoystick + "}", options);
  EXPECT_EQ(opened, 0);
  bench.Ask(kReadHat);
  bench.Ask(kReadAnalog);
  bench.Detect();
  bench.Ask(kReadHat);
  EXPECT_EQ(opened, 1);
}

TEST(HidBoards, ThousandReDetectionsLeaveNoHandleOpen) {
  HidBench bench("{\"id\": \"a\", " + kJoystick + "}, {\"id\": \"b\", " + kJoystick + "}");
  ASSERT_EQ(bench.count, 2U);
  const std::size_t files = OpenFiles();
  for (int i = 0; i < 1000; ++i) {
    ASSERT_THAT(bench.Ask(kReadHat, 1, static_cast<std::size_t>(i) % 2), ElementsAre(0x13));
    ASSERT_NE(bench.Close(), 0);
    ASSERT_EQ(bench.Detect(), 2U);
  }
  // The emulation closes its own end of the last two when it gets to it.
  EXPECT_LE(OpenFiles(), files + 2);
  // Nobody closes what has left.
  bench.Ask(kReadHat, 1, 1);
  bench.kernel.Unplug(1);
  const std::size_t unplugged = OpenFiles();
  EXPECT_EQ(bench.Detect(), 1U);
  EXPECT_LT(OpenFiles(), unplugged);
}

}  // namespace
}  // namespace quillon::testing
