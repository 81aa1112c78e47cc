// SPDX-License-Identifier: MIT
#include <gmock/gmock.h>

#include "settings/BlockLayout.h"
#include "settings/TweakBlock.h"

namespace quillon::testing {

TEST(TweakBlock, HasEveryFieldInItsPlace) {
  ExpectLayout<tweak::Block>("___cccka iiiiiiii dddddddd xxxxxxxx", {{'a', tweak::kActive},
                                                                     {'k', tweak::kCalibrate},
                                                                     {'c', tweak::kCombine},
                                                                     {'i', tweak::kTrimMin},
                                                                     {'d', tweak::kDeadzone},
                                                                     {'x', tweak::kTrimMax}});
}

TEST(TweakBlock, KeepsTheBitsThatNobodyEdits) {
  std::array<std::uint8_t, 32> wire;
  wire.fill(0xFF);
  tweak::Block block;
  block.Read(wire);
  for (const Field field : {tweak::kActive, tweak::kCalibrate, tweak::kCombine, tweak::kTrimMin,
                            tweak::kDeadzone, tweak::kTrimMax}) {
    block.Set(7, field, 0);
  }
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
