// SPDX-License-Identifier: MIT
#include <gmock/gmock.h>

#include <algorithm>
#include <cstring>
#include <random>
#include <span>

#include "kvusb/trace/TraceText.h"

namespace quillon {
namespace {

using Call = TraceEntry::Call;

constexpr std::string_view kGolden =
    "quillon trace 1\n"
    "0.000412 close 0 -> 1\n"
    "0.501018 detect 2 -> 1 boards 2\n"
    "board pid 0910 version 0282 product \"Joystick\" maker \"\" serial \"001\"\n"
    "board pid 00ff version ffff product \"a\\x22b\\x5c\\xc3\\xa9\\x0a\" maker \" m \" serial "
    "\"\"\n"
    "0.600000 detect 3 -> 0\n"
    "4.180733 write 1 -> -2 : 00 3f 08 47 11 *\n"
    "4.182841 read 1 -> 0 : *\n"
    "4.182842 read 1 -> 2 : 11 "
    "00 00 00 00 00 00 00 00 00 00 00 00 00 00 00 00 00 00 00 00 00 00 00 00 00 00 00 00 00 00 00 "
    "00 "
    "00 00 00 00 00 00 00 00 00 00 00 00 00 00 00 00 00 00 00 00 00 00 00 00 00 00 00 00 00 00 00 "
    "a5\n"
    "4.182842 read 1 -> 1\n"
    "12345.000000 read 1023 -> 4\n"
    "12345.000001 close 4294967295 -> 0\n";

DeviceRecord Board(std::uint16_t product, std::uint16_t version, std::string_view product_text,
                   std::string_view maker, std::string_view serial) {
  DeviceRecord record{};
  record.product_id = product;
  record.version = version;
  product_text.copy(record.product_text, sizeof record.product_text);
  maker.copy(record.manufacturer, sizeof record.manufacturer);
  serial.copy(record.serial_number, sizeof record.serial_number);
  return record;
}

TracePacket FullPacket() {
  TracePacket packet{0x11};
  packet[64] = 0xA5;
  return packet;
}

const std::vector<TraceEntry>& GoldenEntries() {
  static const std::vector<TraceEntry> entries{
      {.call = Call::kClose, .seconds = 0.000412, .argument = 0, .result = 1, .line = 2},
      {.call = Call::kDetect,
       .seconds = 0.501018,
       .argument = 2,
       .result = 1,
       .boards = {Board(0x0910, 0x0282, "Joystick", "", "001"),
                  Board(0x00FF, 0xFFFF, "a\"b\\\xC3\xA9\n", " m ", "")},
       .line = 3},
      {.call = Call::kDetect, .seconds = 0.6, .argument = 3, .result = 0, .line = 6},
      {.call = Call::kWrite,
       .seconds = 4.180733,
       .argument = 1,
       .result = -2,
       .packet = {0x00, 0x3F, 0x08, 0x47, 0x11},
       .line = 7},
      {.call = Call::kRead, .seconds = 4.182841, .argument = 1, .result = 0, .line = 8},
      {.call = Call::kRead,
       .seconds = 4.182842,
       .argument = 1,
       .result = 2,
       .packet = FullPacket(),
       .line = 9},
      {.call = Call::kRead, .seconds = 4.182842, .argument = 1, .result = 1, .line = 10},
      {.call = Call::kRead, .seconds = 12345, .argument = 1023, .result = 4, .line = 11},
      {.call = Call::kClose,
       .seconds = 12345.000001,
       .argument = 0xFFFFFFFF,
       .result = 0,
       .line = 12},
  };
  return entries;
}

std::vector<TraceEntry> Parsed(std::string_view text) {
  auto parsed = ParseTrace(text);
  if (const auto* error = std::get_if<std::string>(&parsed)) {
    ADD_FAILURE() << *error;
    return {};
  }
  return std::get<std::vector<TraceEntry>>(std::move(parsed));
}

void ExpectSame(const std::vector<TraceEntry>& got, const std::vector<TraceEntry>& expected) {
  ASSERT_EQ(got.size(), expected.size());
  for (std::size_t i = 0; i < got.size(); ++i) {
    SCOPED_TRACE(i);
    EXPECT_EQ(got[i].call, expected[i].call);
    EXPECT_DOUBLE_EQ(got[i].seconds, expected[i].seconds);
    EXPECT_EQ(got[i].argument, expected[i].argument);
    EXPECT_EQ(got[i].result, expected[i].result);
    EXPECT_EQ(got[i].packet, expected[i].packet);
    EXPECT_EQ(got[i].line, expected[i].line);
    ASSERT_EQ(got[i].boards.size(), expected[i].boards.size());
    for (std::size_t b = 0; b < got[i].boards.size(); ++b) {
      EXPECT_EQ(std::memcmp(&got[i].boards[b], &expected[i].boards[b], sizeof(DeviceRecord)), 0);
    }
  }
}

TEST(TraceText, WritesAndReadsTheGoldenTrace) {
  std::string written(kTraceHeading);
  for (const TraceEntry& entry : GoldenEntries()) written += FormatTraceEntry(entry);
  EXPECT_EQ(written, kGolden);
  ExpectSame(Parsed(kGolden), GoldenEntries());
}

TEST(TraceText, ReadsWhatPeopleAndMailMakeOfIt) {
  ExpectSame(Parsed("\r\n# a remark\r\n   quillon trace 1\r\n\tclose 0 -> 1 \t\r\n \n"
                    "  3 write 0 -> 0 : 0 A bC *\r\nread 0 -> 2 : 11 *"),
             {{.call = Call::kClose, .result = 1, .line = 4},
              {.call = Call::kWrite, .seconds = 3, .packet = {0x00, 0x0A, 0xBC}, .line = 6},
              {.call = Call::kRead, .result = 2, .packet = {0x11}, .line = 7}});
}

TEST(TraceText, KeepsEveryByteOfGarbageRecordsAndPackets) {
  std::mt19937 random(4711);
  const auto byte = [&] { return static_cast<std::uint8_t>(random()); };
  std::string text;
  std::vector<TraceEntry> expected;
  for (int round = 0; round < 50; ++round) {
    TraceEntry detect{.call = Call::kDetect, .argument = 1, .result = 1, .boards = {{}}};
    DeviceRecord& record = detect.boards[0];
    record.product_id = static_cast<std::uint16_t>(random());
    record.version = static_cast<std::uint16_t>(random());
    // Any byte but zero, to the field's end: no text of these has its zero byte.
    for (auto field : {std::span<char>(record.product_text), std::span<char>(record.manufacturer),
                       std::span<char>(record.serial_number)}) {
      for (char& c : field) c = static_cast<char>(byte() | 1);
    }
    TraceEntry write{.call = Call::kWrite};
    std::generate(write.packet.begin(), write.packet.end(), byte);
    TraceEntry read{.call = Call::kRead};
    read.packet[static_cast<std::size_t>(round)] = 1;  // zeros up to it and behind it
    read.packet[64] = static_cast<std::uint8_t>(round % 2);
    for (TraceEntry* entry : {&detect, &write, &read}) {
      text += FormatTraceEntry(*entry);
      entry->line = round * 4 + (entry == &detect ? 1 : entry == &write ? 3 : 4);
      expected.push_back(*entry);
    }
  }
  ExpectSame(Parsed(text), expected);
}

TEST(TraceText, NamesTheLineThatCannotBeRead) {
  const std::string bytes = [] {
    std::string out;
    for (int i = 0; i < 64; ++i) out += " 01";
    return out;
  }();
  const std::string board = "board pid 0910 version 0282 product \"\" maker \"\" serial ";
  const std::string calls[] = {
      "clos 0 -> 1",
      "quillon trace 2",
      "close",
      "close 0",
      "close 0 -> ",
      "close x -> 1",
      "close -1 -> 1",
      "close 4294967296 -> 1",
      "close 0 -> 2147483648",
      "close 0 -> 1 1",
      "close 0 -> 1 : *",
      "1.x close 0 -> 1",
      "1 2 close 0 -> 1",
      "detect 2 -> 1",
      "detect 2 -> 1 boards",
      "detect 2 -> 1 boards -1",
      "detect 2 -> 0 boards 0",
      "write 0 -> 0",
      "write 0 -> 0 :",
      "write 0 -> 0 : 00 01",
      "write 0 -> 0 : 100 *",
      "write 0 -> 0 : 0g *",
      "write 0 -> 0 : * 00",
      "write 0 -> 0 :" + bytes,
      "write 0 -> 0 :" + bytes + " 01 01",
      "read 0 -> 0",
      "read 0 -> 1 : *",
      "read 0 -> 4 : 00 *",
      board + "\"\"",
  };
  for (const std::string& call : calls) {
    const auto parsed = ParseTrace("# one\n\nclose 0 -> 1\n" + call + "\nclose 0 -> 1");
    ASSERT_TRUE(std::holds_alternative<std::string>(parsed)) << call;
    EXPECT_THAT(std::get<std::string>(parsed), ::testing::StartsWith("Line 4 is no call: "));
  }

  const std::string boards[] = {
      "close 0 -> 1",
      board,
      board + "\"",
      board + "x\"\"",
      board + "\"\\x0\"",
      board + "\"\\xzz\"",
      board + "\"\\n\"",
      board + "\"\" more",
      board + "\"123456789012345678901\"",
      "board pid 10910 version 0282 product \"\" maker \"\" serial \"\"",
      "board pid 0910 version product \"\" maker \"\" serial \"\"",
  };
  for (const std::string& line : boards) {
    const auto parsed = ParseTrace("detect 2 -> 1 boards 1\n" + line + "\nclose 0 -> 1");
    ASSERT_TRUE(std::holds_alternative<std::string>(parsed)) << line;
    EXPECT_THAT(std::get<std::string>(parsed), ::testing::StartsWith("Line 2 is no board: "));
  }
  const auto cut = ParseTrace("detect 2 -> 1 boards 2\n" + board + "\"\"");
  ASSERT_TRUE(std::holds_alternative<std::string>(cut));
  EXPECT_EQ(std::get<std::string>(cut), "The trace ends where a board should stand.");
}

}  // namespace
}  // namespace quillon
