// SPDX-License-Identifier: MIT
#include <gmock/gmock.h>

#include "firmware/ImageSource.h"

namespace quillon {
namespace {

using ::testing::ElementsAre;
using ::testing::HasSubstr;
using Bytes = std::vector<std::uint8_t>;
using Pieces = std::vector<FlashPiece>;

const std::string kEnd = ":00000001FF\n";

Pieces PiecesOf(const std::string& text) {
  const auto read = ReadIntelHex(text);
  if (const auto* wrong = std::get_if<std::string>(&read)) {
    ADD_FAILURE() << *wrong;
    return {};
  }
  return std::get<Pieces>(read);
}

std::string ProblemOf(const std::string& text) {
  const auto read = ReadIntelHex(text);
  return std::holds_alternative<Pieces>(read) ? "accepted" : std::get<std::string>(read);
}

TEST(IntelHex, JoinsNeighboursWhereverTheyStandInTheFile) {
  EXPECT_THAT(
      PiecesOf(":02010000028378\r\n"  // 02 83 at 0x0100
               ":01FFFF00778A\r\n"    // the last byte of all
               ":020102001122C8\r\n"  // 11 22 at 0x0102
               ":0100ff00aa56\r\n"    // aa at 0x00FF, in small letters
               ":00000001FF"),        // no line end
      ElementsAre(FlashPiece{0x00FF, {0xAA, 0x02, 0x83, 0x11, 0x22}}, FlashPiece{0xFFFF, {0x77}}));
  EXPECT_TRUE(PiecesOf(kEnd).empty());
  EXPECT_THAT(PiecesOf("\n:0100000011EE \t\r\n \r\n:00000001FF \r\n\n\x1A\x1A\r\n"),
              ElementsAre(FlashPiece{0, {0x11}}));
}

TEST(IntelHex, KnowsSegmentsAndStartAddresses) {
  EXPECT_THAT(PiecesOf(":020000020010EC\n"  // segment 0x0010: base 0x0100
                       ":0100050011E9\n"    // 0x0105
                       ":02000004"
                       "0000FA\n"                 // back to base 0
                       ":0100050022D8\n"          // 0x0005
                       ":0400000300003800C1\n"    // CS:IP
                       ":04000005000000CD2A\n" +  // EIP
                       kEnd),
              ElementsAre(FlashPiece{0x0005, {0x22}}, FlashPiece{0x0105, {0x11}}));
  // Offsets wrap around within a segment.
  EXPECT_THAT(PiecesOf(":020000020000FC\n:02FFFF00AABB9B\n" + kEnd),
              ElementsAre(FlashPiece{0x0000, {0xBB}}, FlashPiece{0xFFFF, {0xAA}}));
}

TEST(IntelHex, SaysWhatIsWrongAndWhere) {
  const std::pair<std::string, const char*> cases[] = {
      {"", "The end record is missing"},
      {":0100000011EE\n", "The end record is missing"},
      {":0100000011EF\n" + kEnd, "Line 1 has a wrong checksum"},
      {":0100000012EE\n" + kEnd, "Line 1 has a wrong checksum"},
      {":0200000011EE\n" + kEnd, "Line 1 is not as long"},
      {":010000001122CC\n" + kEnd, "Line 1 is not as long"},
      {":01\n" + kEnd, "Line 1 is not as long"},
      {":0100000011E\n" + kEnd, "Line 1 ends in the middle of a byte"},
      {":01000000G1EE\n" + kEnd, "Line 1 holds something else"},
      {"0100000011EE\n" + kEnd, "Line 1 does not begin with a colon"},
      {":0100000011EE\n\n" + kEnd + "\x1A:", "Line 4 follows the end record"},
      {":0100000011EE\n :0100010011ED\n" + kEnd, "Line 2 does not begin with a colon"},
      {kEnd + ":0100000011EE\n", "Line 2 follows the end record"},
      {":0100000111ED\n", "Line 1 is an end record with data"},
      {":00000006FA\n" + kEnd, "Line 1 is of the unknown type 6"},
      {":0100000011EE\n:0100000011EE\n" + kEnd, "Line 2 gives the byte at 0x0000 a second time"},
      {":02FFFF00AABB9B\n" + kEnd, "Line 1 has data at 0x10000"},
      {":020000040001F9\n" + kEnd, "Line 1 moves to the addresses from 0x10000 on"},
      {":020000021000EC\n" + kEnd, "Line 1 moves to the addresses from 0x10000 on"},
      {":020000020FFFEE\n:0100100011DE\n" + kEnd, "Line 2 has data at 0x10000"},
      {":0100000400FB\n" + kEnd, "Line 1 is an address record without two bytes"},
      {":00000003FD\n" + kEnd, "Line 1 is a start record without four bytes"},
  };
  for (const auto& [text, problem] : cases)
    EXPECT_THAT(ProblemOf(text), HasSubstr(problem)) << text;
}

TEST(ImageSource, ABinaryBeginsAtZeroAndEndsWithTheAddresses) {
  EXPECT_THAT(std::get<Pieces>(PiecesOfBinary(Bytes{5, 6})), ElementsAre(FlashPiece{0, {5, 6}}));
  EXPECT_TRUE(std::holds_alternative<Pieces>(PiecesOfBinary(Bytes(0x10000))));
  EXPECT_TRUE(std::holds_alternative<std::string>(PiecesOfBinary(Bytes(0x10001))));
}

TEST(ImageSource, CutsPiecesIntoRecords) {
  Bytes bytes;
  for (int i = 0; i < 60; ++i) bytes.push_back(static_cast<std::uint8_t>(i));
  const Pieces pieces = {{0x00F0, bytes}, {0x8000, {0xEE}}};
  const auto records = std::get<std::vector<KvxRecord>>(SplitIntoRecords(pieces));
  ASSERT_EQ(records.size(), 3U);
  EXPECT_EQ(records[0].length, 59);
  EXPECT_EQ(records[0].Address(), 0x00F0);
  EXPECT_EQ(records[0].data[58], 58);
  EXPECT_EQ(records[1], (KvxRecord{1, 0x2B, 0x01, 0, {59}}));
  EXPECT_EQ(records[2], (KvxRecord{1, 0x00, 0x80, 0, {0xEE}}));

  const auto narrow = std::get<std::vector<KvxRecord>>(SplitIntoRecords(pieces, 56));
  ASSERT_EQ(narrow.size(), 3U);
  EXPECT_EQ(narrow[0].length, 56);
  EXPECT_EQ(narrow[1].length, 4);
  EXPECT_EQ(narrow[1].Address(), 0x0128);
}

TEST(ImageSource, RefusesMoreRecordsThanAFileHolds) {
  Pieces pieces;
  for (std::size_t i = 0; i < 2046; ++i) pieces.push_back({i * 2, {1}});
  EXPECT_EQ(std::get<std::vector<KvxRecord>>(SplitIntoRecords(pieces)).size(), 2046U);
  pieces.push_back({0x8000, {1}});
  EXPECT_THAT(std::get<std::string>(SplitIntoRecords(pieces)), HasSubstr("takes 2047 records"));
}

}  // namespace
}  // namespace quillon
