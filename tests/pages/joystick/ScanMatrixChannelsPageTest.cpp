// SPDX-License-Identifier: MIT
#include <gmock/gmock.h>

#include "pages/joystick/CScanMatrixChannelsPage.h"
#include "testing/pages/TranscriptPage.h"
#include "widgets/CGridCtrl.h"

namespace quillon::testing {
namespace {

enum Column { kOn = 1, kMaster, kInvert, kMode, kEncoder, kPush, kPull, kHold };

// What the board holds, cut where a packet ends: mode|_|master|invert|on of each input, then
// _|hold|encoder, push, pull of each pair. Bits that nobody edits are set all over; the codes of
// the inputs 6 and 64 and of the pair 7-8 mean nothing; pair 63-64 has buttons that no board has.
constexpr const char* kInputs1To63 =
    " 00 17 2e 05 1c 39 0a 11 28 0f 16 2d 04 1b 22 09 10 27 0e 15 2c"
    " 03 1a 21 08 1f 26 0d 14 2b 02 19 20 07 1e 25 0c 13 2a 01 18 2f"
    " 06 1d 24 0b 12 29 00 17 2e 05 1c 23 0a 11 28 0f 16 2d 04 1b 22";
constexpr const char* kInput64 = " f1";
// The pairs end in the middle of a record.
constexpr const char* kPairsTo43 =
    " 00 00 40 31 05 3f 42 0a 3e f4 0f 3d 80 14 3c b1 19 3b c2 1e 3a"
    " f3 23 39 00 28 38 31 2d 37 42 32 36 73 37 35 80 3c 34 b1 00 33"
    " c2 05 32 f3 0a 31 00 0f 30 31 14 2f 42 19 2e 73 1e 2d 80 23 2c";
constexpr const char* kPairsFrom43 =
    " b1 28 2b c2 2d 2a f3 32 29 00 37 28 31 3c 27 42 00 26 73 05 25"
    " 80 0a 24 b1 0f 23 c2 14 22 f3 41 ff";

// The same as it goes back, in other pieces. The second packet of each carries its own bytes in
// front of what is left of the first.
constexpr const char* kSent1To59 =
    " 00 17 2e 05 1c 09 0a 11 28 0f 16 2d 04 1b 22 09 10 27 0e 15 2c"
    " 03 1a 21 08 1f 26 0d 14 2b 02 19 20 07 1e 25 0c 13 2a 01 18 2f"
    " 06 1d 24 0b 12 29 00 17 2e 05 1c 23 0a 11 28 0f 16";
constexpr const char* kSent60To64 = " 2d 04 1b 22 01";
const char* const kLeftOfInputs = kSent1To59 + 3 * 5;
constexpr const char* kSentPairs1 =
    " 00 00 40 31 05 3f 42 0a 3e f0 0f 3d 80 14 3c b1 19 3b c2 1e 3a"
    " f3 23 39 00 28 38 31 2d 37 42 32 36 73 37 35 80 3c 34 b1 00 33"
    " c2 05 32 f3 0a 31 00 0f 30 31 14 2f 42 19 2e 73 1e";
constexpr const char* kSentPairs2 =
    " 2d 80 23 2c b1 28 2b c2 2d 2a f3 32 29 00 37 28 31 3c 27 42 00"
    " 26 73 05 25 80 0a 24 b1 0f 23 c2 14 22 f3 40 40";
const char* const kLeftOfPairs = kSentPairs1 + 3 * 37;

std::string Line(const char* head, std::initializer_list<const char*> parts) {
  std::string line = head;
  for (const char* part : parts) line += part;
  return line + "\n";
}

std::string Retrieve() {
  return Line("write 0 -> 0 : 00 3f 08 47 12 *", {}) +
         Line("read 0 -> 0 : 12", {kInputs1To63, " *"}) +
         Line("write 0 -> 0 : 00 01 47 48 12 *", {}) +  //
         Line("read 0 -> 0 : 12", {kInput64, " *"}) + Line("write 0 -> 0 : 00 3f 48 87 17 *", {}) +
         Line("read 0 -> 0 : 17", {kPairsTo43, " *"}) +
         Line("write 0 -> 0 : 00 21 87 a8 17 *", {}) +
         Line("read 0 -> 0 : 17", {kPairsFrom43, " *"});
}

std::string Update() {
  return Line("write 0 -> 0 : 00 3b 08 43 0e 01", {kSent1To59}) + Line("read 0 -> 0 : 0e *", {}) +
         Line("write 0 -> 0 : 00 05 43 48 0e 01", {kSent60To64, kLeftOfInputs}) +
         Line("read 0 -> 0 : 0e *", {}) + Line("write 0 -> 0 : 00 3b 48 83 18 01", {kSentPairs1}) +
         Line("read 0 -> 0 : 18 *", {}) +
         Line("write 0 -> 0 : 00 25 83 a8 18 01", {kSentPairs2, kLeftOfPairs}) +
         Line("read 0 -> 0 : 18 *", {});
}

struct Fixture : TranscriptGridPage<CScanMatrixChannelsPage> {
  Fixture() : TranscriptGridPage(*FindPage(BoardFamily::kScanMatrix, "digital")) {}
};

}  // namespace

TEST(ScanMatrixChannels, MovesBothBlocksInTwoPacketsEach) {
  Fixture fixture;
  fixture.Press("Retrieve", Retrieve());
  const struct {
    int row;
    const char* text;
  } rows[]{
      {1, "Input 1: Normal=0 None=0 None=0 Button 64=64"},
      {2, "Input 2: ON Master Invert Toggle=1 None=0"},
      {3, "Input 3: Master Invert Rotary=2 GRAY 1X - A=1 Button 5=5 Button 63=63 Hold"},
      {4, "Input 4: ON Master Normal=0 GRAY 1X - B=1"},
      {6, "Input 6: ON Normal=0 GRAY 2X - B=2"},
      {7, "Input 7: Invert Normal=0 None=0 Button 15=15 Button 61=61 Hold"},
      {43, "Input 43: Master Invert Normal=0 GRAY 1X - A=1 Button 40=40 Button 43=43 Hold"},
      {63, "Input 63: Invert Rotary=2 GRAY 4X - A=3 Button 64=64 Button 64=64 Hold"},
      {64, "Input 64: ON Normal=0 GRAY 4X - B=3"},
  };
  for (const auto& row : rows) EXPECT_EQ(fixture.Row(row.row), row.text);
  EXPECT_EQ(fixture.grid.Text(2, kPush), "");
  EXPECT_EQ(fixture.grid.Text(2, kPull), "");

  // Twice: a transfer in packets spoils its own buffer.
  for (int i = 0; i < 2; ++i) fixture.Press("Update", Update());
}

TEST(ScanMatrixChannels, ShowsThePairOnTheOddRowAndLineBOnTheEvenOne) {
  Fixture fixture;
  fixture.grid.Enter(63, kEncoder, "GRAY 4X - A");
  EXPECT_EQ(fixture.Row(64), "Input 64: ON Normal=0 GRAY 4X - B=3");
  for (const Column column : {kPush, kPull, kHold}) {
    EXPECT_FALSE(fixture.grid.IsEnabledCell(2, column));
    fixture.grid.Click(2, column);
  }
  EXPECT_EQ(fixture.Row(2), "Input 2: ON Normal=0 None=0");
}

TEST(ScanMatrixChannels, PaintsEachPairAsAUnitAndTheClickedRowApart) {
  Fixture fixture;
  for (const int clicked : {0, 4, 50}) {
    if (clicked > 0) fixture.grid.Click(clicked, kOn);
    for (int row = 1; row <= 64; ++row) {
      const QRgb band = (row - 1) / 2 % 2 == 0 ? qRgb(220, 220, 220) : qRgb(240, 240, 240);
      const QRgb expected = row == clicked ? qRgb(191, 212, 227) : band;
      for (int column = kOn; column <= kHold; ++column)
        EXPECT_EQ(fixture.grid.Background(row, column), expected) << row << ' ' << column;
      EXPECT_TRUE(fixture.grid.IsEnabledCell(row, kEncoder)) << "shown, though chosen on odd ones";
    }
  }
}

}  // namespace quillon::testing
