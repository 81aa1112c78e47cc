// SPDX-License-Identifier: MIT
#include <gmock/gmock.h>

#include <algorithm>
#include <cstring>
#include <random>
#include <span>
#include <sstream>

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
    "4.182842 read 1 -> 2 : 11 00 00 00 00 00 00 00 00 00 00 00 00 00 00 00 00 00 00 00 00 00 "
    "00 00 00 00 00 00 00 00 00 00 00 00 00 00 00 00 00 00 00 00 00 00 00 00 00 00 00 00 00 00 "
    "00 00 00 00 00 00 00 00 00 00 00 00 a5\n"
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

std::vector<TraceEntry> GoldenEntries() {
  TracePacket full{0x11};
  full[64] = 0xA5;
  std::vector<TraceEntry> entries{
      {Call::kClose, 0.000412, 0, 1, {}, {}, 2},
      {Call::kDetect, 0.501018, 2, 1, {}, {}, 3},
      {Call::kDetect, 0.6, 3, 0, {}, {}, 6},
      {Call::kWrite, 4.180733, 1, -2, {0x00, 0x3F, 0x08, 0x47, 0x11}, {}, 7},
      {Call::kRead, 4.182841, 1, 0, {}, {}, 8},
      {Call::kRead, 4.182842, 1, 2, full, {}, 9},
      {Call::kRead, 4.182842, 1, 1, {}, {}, 10},
      {Call::kRead, 12345, 1023, 4, {}, {}, 11},
      {Call::kClose, 12345.000001, 0xFFFFFFFF, 0, {}, {}, 12}};
  entries[1].boards = {Board(0x0910, 0x0282, "Joystick", "", "001"),
                       Board(0x00FF, 0xFFFF, "a\"b\\\xC3\xA9\n", " m ", "")};
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

// What a trace is refused for that has one of the lines, which `|` parts.
void ExpectRefused(const std::string& lines, const std::string& before, const char* problem) {
  std::istringstream all(lines);
  for (std::string line; std::getline(all, line, '|');) {
    const auto parsed = ParseTrace(before + line + "\nclose 0 -> 1");
    ASSERT_TRUE(std::holds_alternative<std::string>(parsed)) << line;
    EXPECT_THAT(std::get<std::string>(parsed), ::testing::StartsWith(problem)) << line;
  }
}

TEST(TraceText, NamesTheLineThatCannotBeRead) {
  std::string bytes = "write 0 -> 0 :";
  for (int i = 0; i < 64; ++i) bytes += " 01";
  const std::string board = "board pid 0910 version 0282 product \"\" maker \"\" serial ";
  ExpectRefused(
      "clos 0 -> 1|quillon trace 2|close|close 0|close 0 -> |close x -> 1|close -1 -> 1|"
      "close 4294967296 -> 1|close 0 -> 2147483648|close 0 -> 1 1|close 0 -> 1 : *|"
      "1.x close 0 -> 1|1 2 close 0 -> 1|detect 2 -> 1|detect 2 -> 1 boards|"
      "detect 2 -> 1 boards -1|detect 2 -> 0 boards 0|write 0 -> 0|write 0 -> 0 :|"
      "write 0 -> 0 : 00 01|write 0 -> 0 : 100 *|write 0 -> 0 : 0g *|write 0 -> 0 : * 00|"
      "read 0 -> 0|read 0 -> 1 : *|read 0 -> 4 : 00 *|" +
          bytes + "|" + bytes + " 01 01|" + board + "\"\"",
      "# one\n\nclose 0 -> 1\n", "Line 4 is no call: ");
  for (const char* serial : {"", "\"", "x\"\"", R"("\x0")", R"("\xzz")", R"("\n")", "\"\" more",
                             "\"123456789012345678901\""})
    ExpectRefused(board + serial, "detect 2 -> 1 boards 1\n", "Line 2 is no board: ");
  ExpectRefused(
      "close 0 -> 1|board pid 10910 version 0282 product \"\" maker \"\" serial \"\"|"
      "board pid 0910 version product \"\" maker \"\" serial \"\"",
      "detect 2 -> 1 boards 1\n", "Line 2 is no board: ");
  const auto cut = ParseTrace("detect 2 -> 1 boards 2\n" + board + "\"\"");
  ASSERT_TRUE(std::holds_alternative<std::string>(cut));
  EXPECT_EQ(std::get<std::string>(cut), "The trace ends where a board should stand.");
}

}  // namespace
}  // namespace quillon
