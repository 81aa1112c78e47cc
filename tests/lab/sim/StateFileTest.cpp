// SPDX-License-Identifier: MIT
#include <gmock/gmock.h>

#include <fstream>
#include <iterator>

#include "boards/StateFile.h"
#include "lab/sim/SimFixture.h"
#include "testing/OwnFolders.h"

namespace quillon::sim {
namespace {

namespace fs = std::filesystem;
using ::testing::ElementsAre;
using ::testing::HasSubstr;
using ::testing::IsEmpty;

const std::string kNodeBoard =
    R"("product": "0x0800", "firmware": "1.10", "queried": "1.13", "mode": "flash",
       "nodes": [{"node": 5, "flash": "1.20"}], "cards": [{"card": 1, "addressed": false}])";

class SimState : public ::testing::Test {
 protected:
  SimState() { fs::remove_all(folder_); }

  BusOptions Options() const { return {.state_folder = folder_, .latency = {}}; }
  fs::path File() const { return folder_ / "b.json"; }
  std::string Text() const {
    std::ifstream stream(File());
    return {std::istreambuf_iterator<char>(stream), {}};
  }
  void Replace(const std::string& text) const { std::ofstream(File()) << text; }

  fs::path folder_ = testing::OwnFolders::Root() / "boards";
};

TEST_F(SimState, SettingsSerialAndCalibrationOutliveTheBus) {
  {
    SimFixture fixture(kJoystickBoard, Options());
    EXPECT_FALSE(fs::exists(File())) << "nothing changed yet";
    fixture.Ask({0, 0, 0, 0, 0x0F, 1, 0xFA, 0x12, 0xFB, 0x34});
    fixture.Ask({0, 0, 0, 0, 0x33, 0, 6, 0x01, 0x02, 0x03, 0x04, 0x05, 0x06});
    fixture.Ask({0, 0, 0, 0, 7, 0, '9', '8', '7'});
  }
  const fs::path leftover = folder_ / "b.json.999999999.tmp";  // no system counts that far
  std::ofstream(leftover) << "half";
  fs::permissions(File(), fs::perms(0644));
  SimFixture fixture(kJoystickBoard, Options());
  EXPECT_THAT(fixture.Ask({0, 0, 0, 0, 0x13}, 5), ElementsAre(0x13, 0xFA, 0x12, 0xFB, 0x34));
  EXPECT_THAT(fixture.Ask({0, 0, 0, 0, 0x30, 0, 6}, 7), ElementsAre(0x30, 1, 2, 3, 4, 5, 6));
  EXPECT_STREQ(fixture.record.serial_number, "987") << "a new start, so the new number";
  EXPECT_THAT(fixture.bus.DescribeProblem(&fixture.record).sentence, IsEmpty());
  EXPECT_FALSE(fs::exists(leftover));
  fixture.Ask({0, 0, 0, 0, 0x0F, 1, 0xFA, 0x12, 0xFB, 0x34});
#ifndef _WIN32  // where the folder's owner alone may read its files
  EXPECT_EQ(fs::status(File()).permissions(), fs::perms(0600)) << "the owner's alone";
#endif
}

TEST_F(SimState, ModeFlashAndNodesOutliveTheBus) {
  {
    SimFixture fixture(kNodeBoard, Options());
    for (const std::uint8_t step : Bytes{7, 9}) fixture.Ask({0, 0, 0, 0, 0x1C, 0, step, 4});
    fixture.Ask({0, 0, 0, 0, 0x1C, 0, 8, 4});
    fixture.Ask({0, 1, 0, 0, 0x1C, 0, 0, 4, 0, 0x77});
    fixture.Ask({0, 0, 0x31, 0x01, 0x1C, 0, 1, 4});
    fixture.Ask({0, 0, 0, 0, 8});
    fixture.Ask({0, 2, 0, 0, 0, 0, 0x01, 0x12});
    fixture.Ask({0, 0, 0, 0, 1});
    fixture.Ask({0, 0, 0, 0, 0xFF});
    fixture.Detect();
    fixture.Ask({0, 2, 6, 2, 0x1C, 1, 0x26, 4, 0, 0x0D, 0xC0});
  }
  {
    SimFixture fixture(kNodeBoard, Options());
    EXPECT_EQ(fixture.Detect(), 3U);
    EXPECT_EQ(fixture.record.version, 0x0112);
    EXPECT_THAT(fixture.Ask({0, 0, 0, 0, 6}, 4), ElementsAre(6, 0x01, 0x12, 1));
    EXPECT_THAT(fixture.Ask({0, 0, 6, 2, 0x1C, 0, 0x25, 4, 2}, 3), ElementsAre(0x25, 0x0D, 0xC0));
    EXPECT_EQ(fixture.TheBoard().State().nodes[4].flash_version, 0x0131);
    EXPECT_EQ(fixture.TheBoard().State().nodes[4].flash.bytes, Bytes{0x77});
    fixture.Ask({0, 0, 0, 0, 0xFF});
    fixture.Detect();
    fixture.Ask({0, 0, 0, 0, 8});
    fixture.Ask({0, 2, 0, 0, 0, 0, 0x01, 0x12});
  }
  SimFixture fixture(kNodeBoard, Options());
  EXPECT_EQ(fixture.Detect(), 1U);
  EXPECT_THAT(fixture.Ask({0, 0, 0, 0, 6}, 4), ElementsAre(6, 0, 0, 0))
      << "power lost in an update";
}

TEST_F(SimState, AFileCutAnywhereOrChangedIsSetAside) {
  SimFixture(kJoystickBoard, Options()).Ask({0, 0, 0, 0, 0x0F, 1, 0xFA, 0x12, 0xFB, 0x34});
  const std::string whole = Text();
  std::vector<std::string> texts = {"", "null", "[]", "{}", "\xFF\xFE"};
  for (std::size_t part = 1; part < 8; ++part)
    texts.push_back(whole.substr(0, whole.size() * part / 8));
  const std::pair<std::string, std::string> changes[] = {
      {R"("FA12FB34")", R"("FA12FB")"},
      {R"("FA12FB34")", R"("FA12FB3x")"},
      {R"("hat")", R"("hut")"},
      {R"("device")", R"("devise")"},
      {R"("format": 1)", R"("format": 2)"},
      {R"("product": 2320)", R"("product": 2336)"},
      {R"("valid": true)", R"("valid": false)"},
      {"1024", "70000"},
      {R"("serial": "001")", R"("serial": "0001")"},
  };
  for (const auto& [from, to] : changes) {
    texts.push_back(whole);
    ASSERT_NE(whole.find(from), whole.npos) << from;
    texts.back().replace(whole.find(from), from.size(), to);
  }
  for (const std::string& text : texts) {
    SCOPED_TRACE(text);
    Replace(text);
    SimFixture fixture(kJoystickBoard, Options());
    EXPECT_THAT(fixture.Ask({0, 0, 0, 0, 0x13}, 5), ElementsAre(0x13, 0xA1, 0xE4, 0x53, 0x1B));
    EXPECT_THAT(fixture.bus.DescribeProblem(&fixture.record).sentence,
                HasSubstr("starts with factory settings"));
    EXPECT_FALSE(fs::exists(File()));
    EXPECT_TRUE(fs::exists(folder_ / "b.json.broken"));
    fs::remove(folder_ / "b.json.broken");
  }
  Replace(whole);
  SimFixture fixture(kJoystickBoard, Options());
  EXPECT_THAT(fixture.Ask({0, 0, 0, 0, 0x13}, 2), ElementsAre(0x13, 0xFA)) << "whole, it is used";
}

TEST_F(SimState, AFolderThatCannotBeUsedIsToldAndTheBoardsWork) {
  std::ofstream(testing::OwnFolders::Root() / "file") << "in the way";
  SimFixture fixture(
      kJoystickBoard,
      {.state_folder = testing::OwnFolders::Root() / "file" / "below", .latency = {}});
  EXPECT_THAT(fixture.bus.DescribeProblem(nullptr).sentence, HasSubstr("cannot be made"));
  EXPECT_THAT(fixture.Ask({0, 0, 0, 0, 0x13}), ElementsAre(0x13));

  // A folder in the place of the file: neither read nor written.
  fs::create_directories(folder_ / "b.json");
  SimFixture other(kJoystickBoard, Options());
  EXPECT_THAT(other.bus.DescribeProblem(&other.record).sentence, HasSubstr("is a folder"));
  Bus bus(RigOf(R"({"id": "c", )" + kJoystickBoard + "}"), Options());
  DeviceRecord record{};
  std::uint32_t count = 0;
  fs::create_directory(folder_ / "c.json");
  ASSERT_NE(bus.DetectHID(count, {&record, 1}, KVUSB_TYPE_FIRMWARE), 0);
  std::uint8_t packet[65] = {0, 0, 0, 0, 0x0F, 1, 1, 2, 3, 4};
  EXPECT_EQ(bus.WriteData(record, packet), KVUSB_OK);
  EXPECT_THAT(bus.DescribeProblem(&record).sentence, HasSubstr("cannot be kept"));
  fs::remove(folder_ / "c.json");
  EXPECT_EQ(bus.WriteData(record, packet), KVUSB_OK);
  EXPECT_THAT(bus.DescribeProblem(&record).sentence, IsEmpty()) << "kept again";
}

}  // namespace
}  // namespace quillon::sim
