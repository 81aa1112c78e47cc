// SPDX-License-Identifier: MIT
#include <gmock/gmock.h>

#include <algorithm>

#include "pages/joystick/CAnalogChannelsPage.h"
#include "testing/pages/TranscriptPage.h"
#include "widgets/CGridCtrl.h"

namespace quillon::testing {
namespace {

enum Column {
  kOn = 1,
  kX = 2,
  kY,
  kZ,
  kRx,
  kRy,
  kRz,
  kS1,
  kS2,
  kInvert,
  kSpike,
  kFilter,
  kResolution,
  kIncremental,
  kCentering
};

// Two blocks with every clamp, a value that no list offers, and all bits that nobody edits set in
// the rows 2 and 10.
constexpr const char* kRetrieve = R"(
  write 0 -> 0 : 00 00 00 00 11 *
  # filter|_|invert|spike|on, _|resolution, axes
  read 0 -> 0 : 11 57 0b 01 fb ff 06 00 0b ff 52 fe 80 a1 02 40 01 00 00 51 03 00 51 0a 00 *
  write 0 -> 0 : 00 00 00 00 15 *
  # resolution|_|invert|incremental|on, _|button, axes
  read 0 -> 0 : 15 b5 03 20 fb ff 10 00 10 ff c3 01 00 31 00 08 21 00 00 f7 1f 80 *
)";

struct Fixture : TranscriptGridPage<CAnalogChannelsPage> {
  explicit Fixture(BoardFamily family) : TranscriptGridPage(*FindPage(family, "analog")) {}
};

}  // namespace

TEST(AnalogChannels, ShowsBothBlocksAndClampsWhatIsOutOfRange) {
  Fixture fixture(BoardFamily::kJoystick);
  EXPECT_EQ(OriginOf(fixture.page), "Not retrieved from the board yet.");
  fixture.Press("Retrieve", kRetrieve);

  EXPECT_EQ(fixture.Row(1), "Analog 1: ON X Invert Spike 5=5 12 Bits=11");
  EXPECT_EQ(fixture.Row(2), "Analog 2: ON Y Z Spike 10=10 12 Bits=11");
  EXPECT_EQ(fixture.Row(3), "Analog 3: 0=0 12 Bits=11") << "off: its axis bits mean nothing";
  EXPECT_EQ(fixture.Row(4), "Analog 4: Spike 5=5 12 Bits=11");
  EXPECT_EQ(fixture.Row(5), "Analog 5: ON S1 10=10 4 Bits=3");
  EXPECT_EQ(fixture.Row(6), "Analog 6: ON 0=0 4 Bits=3");
  EXPECT_EQ(fixture.Row(9), "AE SSI 1: ON Rz Invert 12 Bits=11 Button 3=3");
  EXPECT_EQ(fixture.Row(10), "AE SSI 2: ON Ry 16 Bits=15 Incremental Button 31=31")
      << "values that the lists do not offer are shown and kept";
  EXPECT_EQ(fixture.Row(11), "AE SSI 3: 4 Bits=3 Button 16=16") << "off";
  EXPECT_EQ(fixture.Row(12), "AE SSI 4: ON 13 Bits=12 Incremental Button 1=1");
  EXPECT_EQ(fixture.Row(15), "INC CH 1: ON S2 Invert 16 Bits=15 Button 31=31");
  EXPECT_FALSE(Lamp(fixture.page, "Error").IsLit());
  EXPECT_FALSE(Lamp(fixture.page, "Busy").IsLit());
  EXPECT_EQ(OriginOf(fixture.page).toStdString(),
            "Retrieved from Board : 001. 17 values of the board cannot be shown here.")
      << "axes of channels that are off";
  EXPECT_TRUE(fixture.grid.IsMarked(3, kX));
  EXPECT_TRUE(fixture.grid.IsMarked(2, kFilter)) << "brought inside its range";
  EXPECT_FALSE(fixture.grid.IsMarked(1, kX));
  const QModelIndex filter = fixture.grid.model()->index(1, kFilter - 1);
  EXPECT_TRUE(filter.data(Qt::ToolTipRole).toString().startsWith("The board holds code 15."));
}

TEST(AnalogChannels, IsNotWidenedByTheNameThatABoardGivesItself) {
  Fixture fixture(BoardFamily::kJoystick);
  const int width = fixture.page.minimumSizeHint().width();
  std::ranges::fill(fixture.board.link.table.Record(0).product_text, 'W');
  fixture.Press("Retrieve", kRetrieve);
  ASSERT_TRUE(OriginOf(fixture.page).startsWith("Retrieved from WWWW"));
  EXPECT_EQ(fixture.page.minimumSizeHint().width(), width);
}

TEST(AnalogChannels, SendsBackWhatItDoesNotEditAndDisablesChannelsWithoutAnAxis) {
  Fixture fixture(BoardFamily::kJoystick);
  fixture.Press("Retrieve", kRetrieve);
  fixture.Press("Update", R"(
    write 0 -> 0 : 00 00 00 00 0d 01 57 0b 01 ab fb 06 00 0b 00 52 fb 00 a1 03 40 00 03 00 50 03 00 50 0a 00 *
    read 0 -> 0 : 0d *
    write 0 -> 0 : 00 00 00 00 16 01 b5 03 20 fb ff 10 30 10 00 c2 01 00 31 00 08 30 00 00 f5 1f 80 *
    read 0 -> 0 : 16 *
  )");
}

TEST(AnalogChannels, SaysWhoseTheRestIsAfterHalfAnExchangeWithAnotherBoard) {
  Fixture fixture(BoardFamily::kJoystick);
  fixture.Press("Retrieve", kRetrieve);
  fixture.board.link.table.Record(0).serial_number[0] = '9';
  fixture.library.Expect(R"(
    write 0 -> 0 : 00 00 00 00 0d 01 57 0b 01 ab fb 06 00 0b 00 52 fb 00 a1 03 40 00 03 00 50 03 00 50 0a 00 *
    read 0 -> 0 : 0d *
    write 0 -> 0 : 00 00 00 00 16 01 b5 03 20 fb ff 10 30 10 00 c2 01 00 31 00 08 30 00 00 f5 1f 80 *
    read 0 -> 0 : ee *)");
  Button(fixture.page, "Update").click();
  EXPECT_THAT(OriginOf(fixture.page).toStdString(),
              ::testing::StartsWith("Stored in part only in Board : 901; it holds the rest as "
                                    "before. The rest shown here is that of Board : 001."));
}

TEST(AnalogChannels, SmallControllerHasTheAnalogInputsOnly) {
  Fixture fixture(BoardFamily::kSmallJoystick);
  EXPECT_EQ(fixture.grid.Rows(), 9);
  EXPECT_EQ(fixture.grid.Text(0, fixture.grid.Columns() - 1), "Resolution");
  fixture.Press("Retrieve", R"(
    write 0 -> 0 : 00 00 00 00 11 *
    read 0 -> 0 : 11 57 0b 01 *)");
  EXPECT_EQ(fixture.Row(1), "Analog 1: ON X Invert Spike 5=5 12 Bits=11");
  fixture.Press("Update", R"(
    write 0 -> 0 : 00 00 00 00 0d 01 57 0b 01 00 03 00 00 03 00 00 03 00 00 03 00 00 03 00 00 03 00 00 03 *
    read 0 -> 0 : 0d *)");
}

}  // namespace quillon::testing
