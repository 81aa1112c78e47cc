// SPDX-License-Identifier: MIT
#include <gmock/gmock.h>

#include <array>
#include <cstring>
#include <map>
#include <string_view>

#include "lab/sim/SimFixture.h"
#include "sim/Bus.h"

namespace quillon::sim {
namespace {

using namespace std::chrono_literals;
using ::testing::ElementsAre;
using ::testing::IsEmpty;

const Bytes kReadHat = {0, 0, 0, 0, 0x13}, kReadAnalog = {0, 0, 0, 0, 0x11};

Fault Of(FaultKind kind, std::uint8_t command, unsigned nth = 1, std::uint8_t value = kRefused) {
  return {.kind = kind, .command = command, .nth = nth, .value = value};
}

TEST(SimBus, DetectFillsRecordsOfOneType) {
  Bus bus(RigOf(R"({"id": "a", "product": "0x0910", "firmware": "2.82", "serial": "007"},
                   {"id": "b", "product": "0x1500", "firmware": "1.10"},
                   {"id": "c", "product": "0x0510", "firmware": "2.30", "manufacturer": "Works"})"),
          {.latency = {}});
  std::array<DeviceRecord, 3> table;
  std::uint32_t count = 77;
  EXPECT_EQ(bus.DetectHID(count, table, KVUSB_TYPE_LOADER), 0);
  EXPECT_EQ(count, 77U);
  ASSERT_NE(bus.DetectHID(count, table, KVUSB_TYPE_FIRMWARE), 0);
  ASSERT_EQ(count, 2U);
  EXPECT_EQ(table[0].product_id, 0x0910);
  EXPECT_EQ(table[0].version, 0x0282);
  EXPECT_STREQ(table[0].product_text, "Joystick Controller (simulated)");
  EXPECT_STREQ(table[0].manufacturer, "Quillon Devices");
  EXPECT_STREQ(table[0].serial_number, "007");
  EXPECT_EQ(table[1].product_id, 0x0510);
  EXPECT_STREQ(table[1].manufacturer, "Works");
}

TEST(SimBus, GarbageTextsReachTheRecordByteByByte) {
  SimFixture fixture(kJoystickBoard + R"(, "name_hex": "41 07 FF...", "manufacturer_hex": "C3 28",
                                      "serial_hex": "31...")");
  const std::string_view name(fixture.record.product_text, sizeof fixture.record.product_text);
  EXPECT_EQ(name, "A\a" + std::string(258, '\xFF'));
  EXPECT_STREQ(fixture.record.manufacturer, "\xC3\x28");
  EXPECT_EQ(std::string_view(fixture.record.serial_number, 20), std::string(20, '1'));
}

TEST(SimBus, OnlyARecordOfALivingBoardIsAnswered) {
  SimFixture fixture(kJoystickBoard);
  const auto fails = [&] {
    return fixture.Ask(kReadHat).empty() && fixture.wrote == 1 && fixture.read == 1;
  };
  ASSERT_FALSE(fails());
  EXPECT_NE(fixture.bus.CloseDevices({&fixture.record, 1}), 0);
  EXPECT_NE(fixture.bus.CloseDevices({&fixture.record, 1}), 0) << "twice";
  EXPECT_NE(fixture.bus.CloseDevices({}), 0);
  std::memset(&fixture.record, 0xFF, sizeof fixture.record);
  EXPECT_EQ(fixture.bus.CloseDevices({&fixture.record, 1}), 0) << "garbage";

  fixture.Detect();
  fixture.bus.Unplug("b");
  EXPECT_TRUE(fails()) << "unplugged";
  fixture.bus.Plug("b");
  EXPECT_TRUE(fails()) << "a record from before";
  fixture.Detect();
  EXPECT_FALSE(fails());
}

TEST(SimBus, ReadsAreOnePerWriteAndReportNumbersAreRefused) {
  SimFixture fixture(kJoystickBoard);
  EXPECT_EQ(fixture.Ask(kReadHat, 64)[63], kFiller);
  std::array<std::uint8_t, 65> packet{1};
  EXPECT_EQ(fixture.bus.ReadData(fixture.record, packet), KVUSB_READ_TIMEOUT);
  EXPECT_EQ(fixture.bus.WriteData(fixture.record, packet), KVUSB_WRITE_FAILED);
}

TEST(SimBus, ExchangesEraseAndRestartTakeTheirTime) {
  OwnTime time;
  SimFixture fixture(R"("product": "0x0910", "firmware": "2.82", "mode": "flash", "erase_ms": 900,
                    "reboot_ms": 450)",
                     time.Options());
  fixture.Ask({0, 0, 0, 0, 6});
  EXPECT_EQ(time.now, 2ms);
  fixture.Ask({0, 0, 0, 0, 8});
  EXPECT_EQ(time.now, 904ms);
  fixture.Ask({0, 0, 0, 0, 9});
  EXPECT_EQ(fixture.Detect(), 0U) << "still away";
  time.now += 449ms;
  EXPECT_EQ(fixture.Detect(), 0U);
  time.now += 1ms;
  EXPECT_EQ(fixture.Detect(), 1U);
}

struct Events {
  std::vector<std::string> seen;
  static void Take(std::uint32_t event, std::uint32_t type, const char* path, void* context) {
    const char* what = event == KVUSB_EVENT_ARRIVAL   ? "+"
                       : event == KVUSB_EVENT_REMOVAL ? "-"
                                                      : "?";
    EXPECT_EQ(type, static_cast<std::uint32_t>(KVUSB_DEVICE_INTERFACE));
    static_cast<Events*>(context)->seen.push_back(std::string(what) + path);
  }
};

TEST(SimBus, LeavingAndComingBackIsAnnounced) {
  SimFixture fixture(kJoystickBoard);
  Events events;
  fixture.bus.SetDeviceChangeHandler(Events::Take, &events);
  fixture.Ask({0, 0, 0, 0, 7, 0, '1', '2', '3'});
  fixture.Ask({0, 0, 0, 0, 0xFF});
  fixture.bus.Unplug("b");
  fixture.bus.Unplug("b");
  fixture.bus.Plug("b");
  EXPECT_THAT(
      events.seen,
      ElementsAre(R"(-\\?\HID#Vid_4C7E&Pid_0910#001)", R"(+\\?\HID#Vid_4C7E&Pid_0910#123)",
                  R"(-\\?\HID#Vid_4C7E&Pid_0910#123)", R"(+\\?\HID#Vid_4C7E&Pid_0910#123)"));
  fixture.bus.SetDeviceChangeHandler(nullptr, nullptr);
  fixture.bus.Unplug("b");
  EXPECT_EQ(events.seen.size(), 4U);
}

TEST(SimBus, ARestartWhoseAnswerNobodyReadsHappensAllTheSame) {
  SimFixture fixture(kJoystickBoard);
  std::array<std::uint8_t, 65> packet{0, 0, 0, 0, 0xFF};
  fixture.bus.WriteData(fixture.record, packet);
  EXPECT_EQ(fixture.Detect(), 1U);
}

TEST(SimFaults, TheNthExchangeOfACommandGoesWrongAndNoOther) {
  const std::map<FaultKind, std::pair<std::int32_t, std::int32_t>> results = {
      {FaultKind::kWriteFails, {1, 4}},
      {FaultKind::kReadFails, {0, 1}},
      {FaultKind::kStall, {0, 4}},
  };
  for (const auto& [kind, codes] : results) {
    SimFixture fixture(kJoystickBoard);
    fixture.bus.ProvokeFault("b", Of(kind, 0x13, 2));
    EXPECT_THAT(fixture.Ask(kReadHat), ElementsAre(0x13));
    EXPECT_THAT(fixture.Ask(kReadAnalog), ElementsAre(0x11));
    EXPECT_THAT(fixture.Ask(kReadHat), IsEmpty());
    EXPECT_EQ(std::pair(fixture.wrote, fixture.read), codes);
    EXPECT_THAT(fixture.Ask(kReadHat), ElementsAre(0x13));
  }
}

TEST(SimFaults, WrongAndShortAnswers) {
  SimFixture fixture(kJoystickBoard);
  fixture.bus.ProvokeFault("b", Of(FaultKind::kWrongEcho, 0x13, 1, 0x14));
  fixture.bus.ProvokeFault("b", Of(FaultKind::kShortAnswer, 0x11, 1, 2));
  EXPECT_THAT(fixture.Ask(kReadHat, 2), ElementsAre(0x14, 0xA1));
  EXPECT_THAT(fixture.Ask(kReadAnalog, 5), ElementsAre(0x11, 0x59, 0, 0, 0x11))
      << "the rest of the buffer is as it was sent";
}

TEST(SimFaults, AStalledEraseIsWaitedForLonger) {
  const std::pair<Bytes, std::chrono::seconds> stalls[] = {
      {{0, 0, 0, 0, 0x15}, 2s}, {{0, 0, 0, 0, 8}, 10s}, {{0, 0, 0, 0, 0x1C, 0, 8}, 10s}};
  for (const auto& [request, limit] : stalls) {
    OwnTime time;
    SimFixture fixture(kJoystickBoard, time.Options());
    fixture.bus.ProvokeFault("b", Of(FaultKind::kStall, request[4]));
    const auto before = time.now;
    EXPECT_THAT(fixture.Ask(request), IsEmpty());
    EXPECT_EQ(time.now - before, limit + 2ms);
  }
}

TEST(SimFaults, AStatusMeansThatTheWorkIsNotDone) {
  SimFixture fixture(R"("product": "0x0910", "firmware": "2.71", "mode": "flash", "faults": [
                    {"kind": "status", "command": "0x00", "nth": 2, "value": 6},
                    {"kind": "status", "command": "0x01", "times": 0, "value": 5}])");
  fixture.Ask({0, 0, 0, 0, 8});
  EXPECT_THAT(fixture.Ask({0, 2, 0, 0, 0, 0, 2, 0x82}), ElementsAre(0));
  EXPECT_THAT(fixture.Ask({0, 1, 9, 0, 0, 0, 1}), ElementsAre(kEepromFail));
  EXPECT_EQ(fixture.TheBoard().State().flash.bytes.size(), 2U);
  EXPECT_THAT(fixture.Ask({0, 0, 0, 0, 1}), ElementsAre(kConfigFail));
  EXPECT_THAT(fixture.Ask({0, 0, 0, 0, 1}), ElementsAre(kConfigFail)) << "0 times is for ever";
  EXPECT_FALSE(fixture.TheBoard().State().flash.valid);
}

TEST(SimFaults, NodeFaultsAreNarrowedToFunctionAndNode) {
  SimFixture fixture(R"("product": "0x0800", "firmware": "1.10", "mode": "flash",
                    "nodes": [{"node": 1, "flash": "1.30"}, {"node": 2, "flash": "1.30"}],
                    "faults": [{"kind": "status", "command": "0x1C", "function": "0x08", "node": 2,
                                "value": 11}])");
  EXPECT_THAT(fixture.Ask({0, 0, 0, 0, 0x1C, 0, 7, 1}), ElementsAre(kCommandFail));
  EXPECT_THAT(fixture.Ask({0, 0, 0, 0, 0x1C, 0, 8, 0}), ElementsAre(8));
  EXPECT_THAT(fixture.Ask({0, 0, 0, 0, 0x1C, 0, 8, 1}), ElementsAre(kCrcFail));
}

TEST(SimFaults, ABoardVanishesAndClosingFails) {
  SimFixture fixture(kJoystickBoard);
  Events events;
  fixture.bus.SetDeviceChangeHandler(Events::Take, &events);
  fixture.bus.ProvokeFault("b", {.kind = FaultKind::kCloseFails});
  EXPECT_EQ(fixture.bus.CloseDevices({&fixture.record, 1}), 0);
  fixture.Detect();
  fixture.bus.ProvokeFault("b", Of(FaultKind::kVanish, 0x13, 2));
  EXPECT_THAT(fixture.Ask(kReadHat), ElementsAre(0x13));
  EXPECT_THAT(fixture.Ask(kReadHat), IsEmpty());
  EXPECT_EQ(std::pair(fixture.wrote, fixture.read), std::pair(1, 1));
  EXPECT_EQ(fixture.Detect(), 0U);
  EXPECT_THAT(events.seen, ElementsAre(R"(-\\?\HID#Vid_4C7E&Pid_0910#001)"));
}

}  // namespace
}  // namespace quillon::sim
