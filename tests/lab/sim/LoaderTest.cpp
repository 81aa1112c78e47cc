// SPDX-License-Identifier: MIT
#include <gmock/gmock.h>

#include "lab/sim/SimFixture.h"

namespace quillon::sim {
namespace {

using ::testing::ElementsAre;

const std::string kLoaderBoard =
    R"("product": "0x0910", "firmware": "2.71", "loader": "1.05", "mode": "flash",
       "flash_bytes": 4096)";

const Bytes kErase = {0, 0, 0, 0, 8}, kFinish = {0, 0, 0, 0, 1}, kSwitch = {0, 0, 0, 0, 0xFF};
const Bytes kIdentity = {0, 0, 0, 0, 6}, kRestart = {0, 0, 0, 0, 9};

Bytes Record(std::uint16_t address, const Bytes& data) {
  return Joined(
      {0, static_cast<std::uint8_t>(data.size()), static_cast<std::uint8_t>(address & 0xFF),
       static_cast<std::uint8_t>(address >> 8), 0, 0},
      data);
}

TEST(SimLoader, AnUpdateGivesTheBoardItsNewVersion) {
  SimFixture fixture(kLoaderBoard);
  EXPECT_EQ(fixture.record.version, 0x0105);
  EXPECT_THAT(fixture.Ask(kIdentity, 4), ElementsAre(6, 0x02, 0x71, 1));

  EXPECT_THAT(fixture.Ask(kErase), ElementsAre(8));
  EXPECT_THAT(fixture.Ask(kIdentity, 4), ElementsAre(6, 0, 0, 0));
  EXPECT_THAT(fixture.Ask(Record(0x0102, {0xAA, 0xBB})), ElementsAre(0));
  EXPECT_THAT(fixture.Ask(Record(0x0000, {0x02, 0x82, 0x33})), ElementsAre(0));
  EXPECT_THAT(fixture.Ask(kFinish), ElementsAre(1));
  EXPECT_THAT(fixture.Ask(kIdentity, 4), ElementsAre(6, 0x02, 0x82, 1));
  EXPECT_THAT(fixture.Ask(Record(0, {9})), ElementsAre(kCommandFail)) << "finished";
  const Bytes& flash = fixture.TheBoard().State().flash.bytes;
  ASSERT_EQ(flash.size(), 0x0104U);
  EXPECT_EQ(flash[2], 0x33);
  EXPECT_EQ(flash[3], 0xFF) << "between records nothing was written";
  EXPECT_EQ(flash[0x0103], 0xBB);

  EXPECT_THAT(fixture.Ask(kSwitch), ElementsAre(0xFF));
  EXPECT_EQ(fixture.Detect(), 2U);
  EXPECT_EQ(fixture.record.version, 0x0282);
}

TEST(SimLoader, StatusesOfRecordsThatCannotBeStored) {
  SimFixture fixture(kLoaderBoard);
  EXPECT_THAT(fixture.Ask(Record(0, {1})), ElementsAre(kCommandFail)) << "before the erase";
  EXPECT_THAT(fixture.Ask(kFinish), ElementsAre(kCommandFail)) << "before the erase";
  fixture.Ask(kErase);
  EXPECT_THAT(fixture.Ask({0, 60, 0, 0, 0}), ElementsAre(kCommandFail)) << "60 bytes";
  EXPECT_THAT(fixture.Ask(Record(0x0FC5, Bytes(59))), ElementsAre(0)) << "the last 59 bytes";
  EXPECT_THAT(fixture.Ask(Record(0x0FC6, Bytes(59))), ElementsAre(kFlashFail)) << "one beyond";
  EXPECT_THAT(fixture.Ask({0, 1, 0, 0, 3}), ElementsAre(kCommandFail)) << "no type of record";
  fixture.Ask(kRestart);
  fixture.Detect();
  EXPECT_THAT(fixture.Ask(Record(0, {1})), ElementsAre(kCommandFail))
      << "erased before the restart";
}

TEST(SimLoader, AnImageWithoutAVersionIsNotValidAndDoesNotRun) {
  SimFixture fixture(kLoaderBoard);
  fixture.Ask(kErase);
  fixture.Ask(Record(0x0002, {1, 2, 3}));
  EXPECT_THAT(fixture.Ask(kFinish), ElementsAre(kConfigFail));
  fixture.Ask(kSwitch);
  EXPECT_EQ(fixture.Detect(), 1U);
  EXPECT_THAT(fixture.Ask(kIdentity, 4), ElementsAre(6, 0, 0, 0));
}

TEST(SimLoader, LosingPowerInAnUpdateLeavesNoValidImage) {
  SimFixture fixture(kLoaderBoard);
  fixture.Ask(kErase);
  fixture.Ask(Record(0, {0x02, 0x82}));
  fixture.bus.Unplug("b");
  EXPECT_EQ(fixture.Detect(), 0U);
  fixture.bus.Plug("b");
  ASSERT_EQ(fixture.Detect(), 1U);
  EXPECT_THAT(fixture.Ask(kIdentity, 4), ElementsAre(6, 0, 0, 0));
  EXPECT_THAT(fixture.Ask(Record(2, {1})), ElementsAre(kCommandFail));
}

TEST(SimLoader, TheFirmwareTakesNoFlashCommand) {
  SimFixture fixture(kJoystickBoard);
  for (const Bytes& request : {kErase, kFinish, Record(0, {1})})
    EXPECT_THAT(fixture.Ask(request), ElementsAre(kCommandFail));
  EXPECT_TRUE(fixture.TheBoard().State().flash.valid);
}

TEST(SimLoader, TheQueriedWordOfTheRigHoldsUntilTheNextUpdate) {
  SimFixture fixture(R"("product": "0x1500", "firmware": "1.10", "queried": "1.34")");
  EXPECT_EQ(fixture.record.version, 0x0110);
  EXPECT_THAT(fixture.Ask(kIdentity, 4), ElementsAre(6, 0x01, 0x34, 1));
  fixture.Ask(kSwitch);
  ASSERT_EQ(fixture.Detect(), 1U);
  EXPECT_THAT(fixture.Ask(kIdentity, 4), ElementsAre(6, 0x01, 0x10, 1))
      << "the loader looks itself";
  fixture.Ask(kErase);
  fixture.Ask(Record(0, {0x01, 0x12}));
  fixture.Ask(kFinish);
  fixture.Ask(kSwitch);
  ASSERT_EQ(fixture.Detect(), 3U);
  EXPECT_THAT(fixture.Ask(kIdentity, 4), ElementsAre(6, 0x01, 0x12, 1));
}

TEST(SimLoader, ASerialNumberCountsAfterTheNextRestart) {
  SimFixture fixture(kJoystickBoard);
  EXPECT_THAT(fixture.Ask({0, 0, 0, 0, 7, 0, '0', '4', '2'}), ElementsAre(7));
  EXPECT_THAT(fixture.Ask({0, 0, 0, 0, 7, 0, '0', 'x', '2'}), ElementsAre(kRefused));
  fixture.Detect();
  EXPECT_STREQ(fixture.record.serial_number, "001");
  EXPECT_THAT(fixture.Ask(kRestart), ElementsAre(9));
  EXPECT_EQ(fixture.Detect(), 2U) << "9 keeps the mode";
  EXPECT_STREQ(fixture.record.serial_number, "042");
}

}  // namespace
}  // namespace quillon::sim
