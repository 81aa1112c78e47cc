// SPDX-License-Identifier: MIT
#include <gmock/gmock.h>

#include "lab/sim/SimFixture.h"

namespace quillon::sim {
namespace {

using ::testing::ElementsAre;

class SimCalibration : public ::testing::Test {
 protected:
  Bytes Measure(std::uint8_t axis) { return fixture_.Ask({0, 0, 0, 0, 0x30, 0, axis}, 7); }
  AxisRange Stored(std::size_t axis) { return fixture_.TheBoard().State().calibration[axis]; }

  SimFixture fixture_{kJoystickBoard};
};

TEST_F(SimCalibration, TheOpenAxisMovesTheSameWayEveryTime) {
  EXPECT_THAT(Measure(3), ElementsAre(0x30, 0x00, 0x04, 0x00, 0x80, 0x00, 0xFC));
  EXPECT_THAT(Measure(3), ElementsAre(0x30, 0xF0, 0x03, 0x08, 0x80, 0x10, 0xFC));
  EXPECT_THAT(Measure(3), ElementsAre(0x30, 0xE0, 0x03, 0x10, 0x80, 0x20, 0xFC));
  EXPECT_THAT(Measure(4), ElementsAre(0x30, 0x00, 0x04, 0x00, 0x80, 0x00, 0xFC)) << "another axis";
  EXPECT_THAT(Measure(3), ElementsAre(0x30, 0x00, 0x04, 0x00, 0x80, 0x00, 0xFC)) << "opened anew";
}

TEST_F(SimCalibration, AcceptStoresWhatWasReadLast) {
  Measure(2);
  Measure(2);
  EXPECT_THAT(fixture_.Ask({0, 0, 0, 0, 0x31, 0, 2}), ElementsAre(0x31));
  EXPECT_EQ(Stored(2), (AxisRange{0x03F0, 0x8008, 0xFC10}));
  EXPECT_THAT(Measure(2), ElementsAre(0x30, 0xF0, 0x03, 0x08, 0x80, 0x10, 0xFC));
}

TEST_F(SimCalibration, CancelKeepsWhatWasStored) {
  Measure(1);
  Measure(1);
  EXPECT_THAT(fixture_.Ask({0, 0, 0, 0, 0x32, 0, 1}), ElementsAre(0x32));
  EXPECT_EQ(Stored(1), AxisRange());
  EXPECT_THAT(fixture_.Ask({0, 0, 0, 0, 0x31, 0, 1}), ElementsAre(kRefused)) << "closed already";
  EXPECT_THAT(fixture_.Ask({0, 0, 0, 0, 0x32, 0, 1}), ElementsAre(0x32)) << "nothing to cancel";
}

TEST_F(SimCalibration, ManualStoresTheValuesInAnyOrder) {
  Measure(7);
  EXPECT_THAT(fixture_.Ask({0, 0, 0, 0, 0x33, 0, 7, 0x34, 0x12, 0xFF, 0xFF, 0x01, 0x00}),
              ElementsAre(0x33));
  EXPECT_EQ(Stored(7), (AxisRange{0x1234, 0xFFFF, 0x0001}));
  EXPECT_THAT(fixture_.Ask({0, 0, 0, 0, 0x31, 0, 7}), ElementsAre(kRefused)) << "closed by 0x33";
}

TEST_F(SimCalibration, RefusesAnAxisThatIsNotThereOrNotOpen) {
  for (const std::uint8_t command : Bytes{0x30, 0x31, 0x32, 0x33})
    EXPECT_THAT(fixture_.Ask({0, 0, 0, 0, command, 0, 8}), ElementsAre(kRefused));
  Measure(0);
  EXPECT_THAT(fixture_.Ask({0, 0, 0, 0, 0x31, 0, 5}), ElementsAre(kRefused));
  EXPECT_EQ(Stored(5), AxisRange());
}

}  // namespace
}  // namespace quillon::sim
