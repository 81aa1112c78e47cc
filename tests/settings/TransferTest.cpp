// SPDX-License-Identifier: MIT
#include <gmock/gmock.h>

#include <numeric>

#include "settings/Transfer.h"
#include "testing/link/TranscriptLibrary.h"

namespace quillon::testing {
namespace {

using End = TransferResult::End;

constexpr bool kRead = false, kWrite = true;

constexpr Block kWhole{.id = "whole", .read = 0x11, .write = 0x0D, .bytes = 2, .tables = {}};
constexpr Block kUnchecked{
    .id = "", .read = 0x14, .write = 0x10, .bytes = 2, .tables = {}, .write_checked = false};
constexpr Block kRange{.id = "range",
                       .way = Way::kRange,
                       .read = 0x12,
                       .write = 0x0E,
                       .start = 8,
                       .end = 72,
                       .bytes = 64,
                       .tables = {}};
// The word of an I/O port.
constexpr Block kPort{.id = "port",
                      .way = Way::kNode,
                      .read = 0x25,
                      .write = 0x26,
                      .start = 6,
                      .end = 8,
                      .bytes = 2,
                      .tables = {}};

// 59 and 5 bytes from 1 on, as a chunked write sends them.
std::string Bytes(int first, int last) {
  std::string text;
  for (int byte = first; byte <= last; ++byte) {
    char word[4];
    std::snprintf(word, sizeof word, " %02x", static_cast<unsigned>(byte));
    text += word;
  }
  return text;
}

}  // namespace

TEST(Transfer, SendsTheRequestOfTheBlocksWayAndTellsHowItEnded) {
  const std::string first = "write 0 -> 0 : 00 3b 08 43 0e 01" + Bytes(1, 59);
  const std::string second = "write 0 -> 0 : 00 05 43 48 0e 01" + Bytes(60, 64) + Bytes(6, 59);
  const std::string half_of_it = first + "\nread 0 -> 0 : 0e *\n" + second;
  const std::string ask = "write 0 -> 0 : 00 00 00 00 11 *\n";
  const std::string tell = " 00 00 00 00 0d 01 01 02 *\n";
  const std::string unchecked = " 00 00 00 00 10 01 01 02 *\n";
  const struct {
    const char* name;
    bool write;
    const Block& block;
    std::string exchanges;
    End end;
    std::size_t bytes;
  } cases[]{
      {"read", kRead, kWhole, ask + "read 0 -> 0 : 11 01 02 *", End::kDone, 2},
      {"a failed write of a query", kRead, kWhole,
       "write 0 -> 1 : 00 00 00 00 11 *\nread 0 -> 0 : 11 01 02 *", End::kDone, 2},
      {"no answer", kRead, kWhole, ask + "read 0 -> 4", End::kNotTransported, 0},
      {"another echo", kRead, kWhole, ask + "read 0 -> 0 : 0d *", End::kRefused, 0},
      {"write", kWrite, kWhole, "write 0 -> 0 :" + tell + "read 0 -> 0 : 0d *", End::kDone, 2},
      {"not sent", kWrite, kWhole, "write 0 -> 1 :" + tell, End::kNotTransported, 0},
      {"refused", kWrite, kWhole, "write 0 -> 0 :" + tell + "read 0 -> 0 : 11 *", End::kRefused, 0},
      {"unchecked, refused", kWrite, kUnchecked,
       "write 0 -> 0 :" + unchecked + "read 0 -> 0 : ee *", End::kDone, 0},
      {"unchecked, not sent", kWrite, kUnchecked, "write 0 -> 1 :" + unchecked, End::kDone, 0},
      {"another echo for a query of the same block", kRead, kUnchecked,
       "write 0 -> 0 : 00 00 00 00 14 *\nread 0 -> 0 : ee *", End::kRefused, 0},
      {"range", kWrite, kRange, first + "\nread 0 -> 0 : ee *\n" + second + "\nread 0 -> 0 : 0e *",
       End::kDone, 64},
      {"half a range", kWrite, kRange, half_of_it + "\nread 0 -> 4", End::kNotTransported, 59},
      {"range refused", kWrite, kRange, half_of_it + "\nread 0 -> 0 : 12 *", End::kRefused, 59},
      {"the command is no echo", kWrite, kPort,
       "write 0 -> 0 : 00 02 06 02 1c 01 26 00 00 01 02 *\nread 0 -> 0 : 1c *", End::kRefused, 0},
  };
  for (const auto& c : cases) {
    SCOPED_TRACE(c.name);
    TranscriptLibrary library(c.exchanges);
    DeviceRecord board{};
    const TransferResult result{c.end, c.bytes};
    std::vector<std::uint8_t> bytes(c.block.bytes);
    std::vector<std::uint8_t> counted(c.block.bytes);
    std::iota(counted.begin(), counted.end(), std::uint8_t{1});
    if (c.write) {
      EXPECT_EQ(WriteBlock(library, board, c.block, counted), result);
    } else {
      EXPECT_EQ(ReadBlock(library, board, c.block, bytes), result);
      EXPECT_EQ(bytes == counted, result.IsDone()) << "untouched otherwise";
    }
  }
}

}  // namespace quillon::testing
