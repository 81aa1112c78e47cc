// SPDX-License-Identifier: MIT
#include <gmock/gmock.h>

#include <random>

#include "hidraw/ReportDescriptor.h"

namespace quillon {
namespace {

using Bytes = std::vector<std::uint8_t>;
using ::testing::ElementsAre;
using ::testing::IsEmpty;

TEST(ReportDescriptor, TellsTheUsageOfEachTopLevelCollection) {
  const Bytes joystick_then_board = {
      0x05, 0x01, 0x09, 0x04, 0xA1, 0x01,        // Generic Desktop, Joystick, Application
      0x09, 0x01, 0xA1, 0x00,                    //   Pointer, Physical
      0x09, 0x30, 0x09, 0x31, 0x81, 0x02, 0xC0,  //   X, Y, Input
      0xC0,                                      //
      0x06, 0x4C, 0xFF, 0x09, 0x03, 0xA1, 0x01,  // 0xFF4C, 3, Application
      0x09, 0x10, 0x81, 0x02, 0xC0};
  EXPECT_THAT(TopLevelCollections(joystick_then_board),
              ElementsAre(CollectionUsage{1, 4}, CollectionUsage{0xFF4C, 3}));
}

TEST(ReportDescriptor, KnowsTheWaysToNameAUsage) {
  const struct {
    const char* way;
    Bytes descriptor;
    CollectionUsage usage;
  } cases[]{
      {"usage before page", {0x09, 0x02, 0x06, 0x4C, 0xFF, 0xA1, 0x01, 0xC0}, {0xFF4C, 2}},
      {"with its page", {0x05, 0x01, 0x0B, 0x02, 0x00, 0x4C, 0xFF, 0xA1, 0x01}, {0xFF4C, 2}},
      {"the first of two", {0x06, 0x4C, 0xFF, 0x09, 0x02, 0x09, 0x03, 0xA1, 0x01}, {0xFF4C, 2}},
      {"none", {0x06, 0x4C, 0xFF, 0xA1, 0x01}, {0xFF4C, 0}},
      {"one for an input before it", {0x05, 0x01, 0x09, 0x02, 0x81, 0x02, 0xA1, 0x01}, {1, 0}},
      {"a page pushed and popped",
       {0x06, 0x4C, 0xFF, 0xA4, 0x05, 0x01, 0xB4, 0x09, 0x01, 0xA1, 0x01},
       {0xFF4C, 1}},
      {"behind a long item",
       {0xFE, 0x02, 0xF0, 0xA1, 0xC0, 0x06, 0x4C, 0xFF, 0x09, 0x01, 0xA1, 0x01},
       {0xFF4C, 1}},
  };
  for (const auto& c : cases)
    EXPECT_THAT(TopLevelCollections(c.descriptor), ElementsAre(c.usage)) << c.way;
}

TEST(ReportDescriptor, EndsWhereItMakesNoSense) {
  const Bytes whole = {0x06, 0x4C, 0xFF, 0x0B, 0x01, 0x00, 0x4C, 0xFF, 0xA1, 0x01, 0xC0};
  for (std::size_t length = 0; length < whole.size(); ++length) {
    // On the heap and cut to its size, so that a read past the end is seen.
    const Bytes cut(whole.begin(), whole.begin() + static_cast<std::ptrdiff_t>(length));
    EXPECT_EQ(TopLevelCollections(cut).size(), length >= 10 ? 1U : 0U) << length;
  }
  EXPECT_THAT(TopLevelCollections(Bytes{0xC0, 0xA1, 0x01}), IsEmpty()) << "ends what never began";
  EXPECT_THAT(TopLevelCollections(Bytes{0xB4, 0xA1, 0x01}), IsEmpty()) << "pops what is not there";
  EXPECT_THAT(TopLevelCollections(Bytes{0xFE, 0xFF, 0x00, 0xA1}), IsEmpty()) << "a cut long item";

  std::mt19937 random(4711);  // NOLINT: the same bytes every time
  for (int i = 0; i < 2000; ++i) {
    Bytes garbage(random() % 80);
    for (auto& byte : garbage) byte = static_cast<std::uint8_t>(random());
    EXPECT_LE(TopLevelCollections(garbage).size(), garbage.size());
  }
}

}  // namespace
}  // namespace quillon
