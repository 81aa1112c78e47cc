// SPDX-License-Identifier: MIT
#include <gmock/gmock.h>

#include "settings/BlockLayout.h"
#include "settings/TweakBlock.h"

namespace quillon::testing {

const std::vector<DrawnField> kTweak{{'c', tweak::kCombine},  {'k', tweak::kCalibrate},
                                     {'a', tweak::kActive},   {'i', tweak::kTrimMin},
                                     {'d', tweak::kDeadzone}, {'x', tweak::kTrimMax}};

TEST(TweakBlock, HasEveryFieldInItsPlace) {
  ExpectLayout<tweak::Block>("___cccka iiiiiiii dddddddd xxxxxxxx", kTweak);
}

TEST(TweakBlock, KeepsTheBitsThatNobodyEdits) {
  auto block = BlockOf<tweak::Block>(Bytes(32, 0xFF));
  for (const DrawnField& drawn : kTweak) block.Set(7, drawn.field, 0);
  block.Set(6, tweak::kCombine, 5);
  const auto wire = WireOf(block);
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
