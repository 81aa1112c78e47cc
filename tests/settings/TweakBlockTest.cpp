// SPDX-License-Identifier: MIT
#include <gmock/gmock.h>

#include "settings/TweakBlock.h"
#include "settings/WalkingBit.h"

namespace quillon::testing {
namespace {

const NamedFields kFields{{"active", tweak::kActive},      {"calibrate", tweak::kCalibrate},
                          {"combine", tweak::kCombine},    {"trim min", tweak::kTrimMin},
                          {"dead zone", tweak::kDeadzone}, {"trim max", tweak::kTrimMax}};

}  // namespace

TEST(TweakBlock, EveryBitIsOneFieldOfOneAxisOrNobodys) {
  // Bits of a record from the lowest on.
  const std::array<const char*, 32> expected{"active=1",
                                             "calibrate=1",
                                             "combine=1",
                                             "combine=2",
                                             "combine=4",
                                             "",
                                             "",
                                             "",
                                             "trim min=1",
                                             "trim min=2",
                                             "trim min=4",
                                             "trim min=8",
                                             "trim min=16",
                                             "trim min=32",
                                             "trim min=64",
                                             "trim min=128",
                                             "dead zone=1",
                                             "dead zone=2",
                                             "dead zone=4",
                                             "dead zone=8",
                                             "dead zone=16",
                                             "dead zone=32",
                                             "dead zone=64",
                                             "dead zone=128",
                                             "trim max=1",
                                             "trim max=2",
                                             "trim max=4",
                                             "trim max=8",
                                             "trim max=16",
                                             "trim max=32",
                                             "trim max=64",
                                             "trim max=128"};
  for (std::size_t bit = 0; bit < 8 * 32; ++bit) {
    const std::string field = expected[bit % 32];
    const std::string shown = std::to_string(bit / 32) + "." + field + " ";
    EXPECT_EQ(ShownOfBit<tweak::Block>(bit, kFields), field.empty() ? "" : shown) << "bit " << bit;
  }
}

TEST(TweakBlock, KeepsTheBitsThatNobodyEdits) {
  std::array<std::uint8_t, 32> wire;
  wire.fill(0xFF);
  tweak::Block block;
  block.Read(wire);
  for (const auto& [name, field] : kFields) block.Set(7, field, 0);
  block.Set(6, tweak::kCombine, 5);
  block.Write(wire);
  EXPECT_THAT(std::span(wire).last(8),
              ::testing::ElementsAre(/* S1 combined with Rz */ 0xF7, 0xFF, 0xFF, 0xFF,
                                     /* S2 */ 0xE0, 0x00, 0x00, 0x00));
}

TEST(CalibrationValues, AreLowByteFirst) {
  calibration::Values values;
  values.Read(std::array<std::uint8_t, 6>{0x01, 0x04, 0x02, 0x80, 0x03, 0xFC});
  EXPECT_EQ(values.Get(calibration::kMin, calibration::kValue), 0x0401U);
  EXPECT_EQ(values.Get(calibration::kCenter, calibration::kValue), 0x8002U);
  EXPECT_EQ(values.Get(calibration::kMax, calibration::kValue), 0xFC03U);
}

}  // namespace quillon::testing
