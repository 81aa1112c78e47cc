// SPDX-License-Identifier: MIT
#include <gmock/gmock.h>

#include "pages/common/FlashPace.h"

namespace quillon {
namespace {

using Time = FlashPace::Time;

TEST(FlashPace, DrawsTenTimesASecondAndTheFirstAndLastRecord) {
  FlashPace pace;
  pace.Begin(1000, Time(5));
  std::vector<int> drawn;
  for (int record = 1; record <= 1000; ++record) {
    if (pace.IsDue(record, Time(5 + 2 * record))) drawn.push_back(record);
  }
  EXPECT_EQ(drawn.size(), 20U + 1U) << "two seconds";
  EXPECT_EQ(drawn.front(), 1);
  EXPECT_EQ(drawn[1], 51);
  EXPECT_EQ(drawn.back(), 1000);
  EXPECT_TRUE(pace.IsDue(0, Time(2005))) << "an abort sets the bar back";
}

TEST(FlashPace, TellsElapsedAndRemainingTime) {
  FlashPace pace;
  pace.Begin(400, Time(1000));
  EXPECT_EQ(pace.Describe(0, Time(1000)), "0:00");
  EXPECT_EQ(pace.Describe(100, Time(6900)), "0:05, about 0:18 left");
  EXPECT_EQ(pace.Describe(200, Time(131'000)), "2:10, about 2:10 left");
  EXPECT_EQ(pace.Describe(400, Time(261'000)), "4:20");
}

}  // namespace
}  // namespace quillon
