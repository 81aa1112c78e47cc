// SPDX-License-Identifier: MIT
#include <gmock/gmock.h>

#include <cstdio>
#include <numeric>
#include <string>
#include <vector>

#include "devlink/Exchange.h"
#include "kvusb/HidPacket.h"
#include "testing/link/TranscriptLibrary.h"

namespace quillon {
namespace {

using quillon::testing::TranscriptLibrary;
using Buffer = std::vector<std::uint8_t>;

// `count` bytes that count up from `first`, as a transcript writes them.
std::string Counting(int first, int count) {
  std::string out;
  for (int i = first; i < first + count; ++i) {
    char text[4];
    std::snprintf(text, sizeof text, "%02x ", i & 0xFF);
    out += text;
  }
  return out;
}

Buffer CountingBytes(int first, int count) {
  Buffer bytes(static_cast<std::size_t>(count));
  std::iota(bytes.begin(), bytes.end(), static_cast<std::uint8_t>(first));
  return bytes;
}

Buffer Part(const Buffer& bytes, int from, int count) {
  return {bytes.begin() + from, bytes.begin() + from + count};
}

// A buffer of `size` bytes with a header, and behind it bytes that count up from 1.
Buffer Request(std::size_t size, std::initializer_list<std::uint8_t> header) {
  Buffer buffer(size);
  std::iota(buffer.begin() + 6, buffer.end(), std::uint8_t{1});
  std::copy(header.begin(), header.end(), buffer.begin());
  return buffer;
}

TEST(Exchange, OnlyTheNamedResultsFail) {
  const std::string query = "write 0 -> 0 : 00 00 00 00 11 *\n";
  DeviceRecord record{};
  for (const auto& [result, succeeds] : {std::pair{"0 : 11 *", true},
                                         {"1", false},
                                         {"2 : 11 *", true},
                                         {"3 : 11 *", true},
                                         {"4", false},
                                         {"5 : 11 *", true},
                                         {"-1 : 11 *", true}}) {
    SCOPED_TRACE(std::string("read -> ") + result);
    for (const auto exchange : {QueryPacket, SendPacket, QueryBlock, SendBlock}) {
      TranscriptLibrary library(query + "read 0 -> " + result);
      HidPacket packet{0, 0, 0, 0, 0x11};
      EXPECT_EQ(exchange(library, record, packet), succeeds);
      EXPECT_EQ(packet[0], succeeds ? 0x11 : 0);
    }
  }
}

TEST(Exchange, AFailedWriteEndsASendButNotAQuery) {
  DeviceRecord record{};
  for (const int result : {0, 1, 2, 4, -1}) {
    SCOPED_TRACE(result);
    const std::string write = "write 0 -> " + std::to_string(result) + " : 00 00 00 00 11 *\n";
    const std::string read = "read 0 -> 0 : 11 22 *";
    HidPacket packet{0, 0, 0, 0, 0x11};
    TranscriptLibrary query(write + read);
    EXPECT_TRUE(QueryPacket(query, record, packet));
    EXPECT_EQ(packet, (HidPacket{0x11, 0x22}));

    packet = {0, 0, 0, 0, 0x11};
    TranscriptLibrary send(result == 1 ? write : write + read);
    EXPECT_EQ(SendPacket(send, record, packet), result != 1);
    EXPECT_EQ(packet, result == 1 ? (HidPacket{0, 0, 0, 0, 0x11}) : (HidPacket{0x11, 0x22}));
  }
}

TEST(Exchange, UpToTheLimitATransferIsOneExchangeOnTheCallersBuffer) {
  DeviceRecord record{};
  Buffer query = Request(65, {0, 63, 8, 71, 0x11, 7});
  TranscriptLibrary board("write 0 -> 0 : 00 3f 08 47 11 07 " + Counting(1, 59) +
                          "\nread 0 -> 0 : 11 " + Counting(8, 64));
  EXPECT_TRUE(QueryBlock(board, record, query));
  EXPECT_EQ(query[0], 0x11);
  EXPECT_EQ(Part(query, 1, 64), CountingBytes(8, 64));

  Buffer send = Request(130, {0, 59, 8, 67, 0x21, 1});
  board.Expect("write 0 -> 0 : 00 3b 08 43 21 01 " + Counting(1, 59) + "\nread 0 -> 0 : 21 " +
               Counting(8, 64));
  EXPECT_TRUE(SendBlock(board, record, send));
  EXPECT_EQ(send[0], 0x21);
  EXPECT_EQ(Part(send, 65, 65), CountingBytes(60, 65)) << "behind the packet nothing changes";
}

// Boards of these cases hold at index i the value i, so the data that arrive are the range itself.
TEST(QueryBlock, IsCutIntoChunksOf63Bytes) {
  struct Case {
    const char* what;
    std::uint8_t length, start, end;
    std::uint16_t buffer;
    std::vector<const char*> chunks;  // length, start and end byte of each request
    bool succeeds;
    int arrived;
  };
  const Case cases[] = {
      {"the length byte alone decides", 64, 8, 18, 65, {"0a 08 12"}, true, 10},
      {"64 bytes", 64, 8, 72, 65, {"3f 08 47", "01 47 48"}, true, 64},
      {"96 bytes", 96, 72, 168, 97, {"3f 48 87", "21 87 a8"}, true, 96},
      {"exactly two chunks", 126, 0, 126, 127, {"3f 00 3f", "3f 3f 7e"}, true, 126},
      {"to the last index", 64, 192, 255, 65, {"3f c0 ff"}, true, 63},
      {"past index 255 to 3",
       64,
       196,
       255,
       316,
       {"3f c4 03", "3f 03 42", "3f 42 81", "3f 81 c0", "3f c0 ff"},
       true,
       315},
      {"the same without the room", 64, 196, 255, 65, {"3f c4 03"}, false, 63},
      {"one byte too small", 64, 8, 73, 65, {"3f 08 47"}, false, 63},
  };
  DeviceRecord record{};
  for (const Case& c : cases) {
    SCOPED_TRACE(c.what);
    std::string transcript;
    int at = c.start;
    for (const std::string chunk : c.chunks) {
      transcript += "write 0 -> 0 : 00 " + chunk + " 11 *\n";
      transcript += "read 0 -> 0 : 11 " + Counting(at, 63) + "ee\n";
      at += std::stoi(chunk, nullptr, 16);
    }
    TranscriptLibrary library(transcript);
    Buffer buffer = Request(c.buffer, {0, c.length, c.start, c.end, 0x11, 1});
    const Buffer before = buffer;
    EXPECT_EQ(QueryBlock(library, record, buffer), c.succeeds);
    EXPECT_EQ(buffer[0], c.succeeds ? 0x11 : 0);
    EXPECT_EQ(Part(buffer, 1, c.arrived), CountingBytes(c.start, c.arrived));
    const int rest = c.buffer - 1 - c.arrived;
    EXPECT_EQ(Part(buffer, 1 + c.arrived, rest), Part(before, 1 + c.arrived, rest));
  }
}

TEST(QueryBlock, TheLastChunkTellsTheEcho) {
  DeviceRecord record{};
  TranscriptLibrary library(R"(
      write 0 -> 0 : 00 3f 08 47 11 *
      read 0 -> 0 : 11 *
      write 0 -> 0 : 00 01 47 48 11 *
      read 0 -> 0 : 7f *)");
  Buffer buffer = Request(65, {0, 64, 8, 72, 0x11});
  EXPECT_TRUE(QueryBlock(library, record, buffer));
  EXPECT_EQ(buffer[0], 0x7F);
}

TEST(QueryBlock, AFailedChunkEndsItWithoutAnEcho) {
  const std::vector<std::string> writes{"write 0 -> 0 : 00 3f 08 47 11 *\n",
                                        "write 0 -> 0 : 00 3f 47 86 11 *\n",
                                        "write 0 -> 0 : 00 22 86 a8 11 *\n"};
  DeviceRecord record{};
  for (std::size_t failing = 0; failing < writes.size(); ++failing) {
    SCOPED_TRACE(failing);
    std::string transcript;
    for (std::size_t i = 0; i < failing; ++i) transcript += writes[i] + "read 0 -> 0 : 11 ab *\n";
    TranscriptLibrary library(transcript + writes[failing] + "read 0 -> 4");
    Buffer buffer = Request(161, {0, 160, 8, 168, 0x11});
    EXPECT_FALSE(QueryBlock(library, record, buffer));
    EXPECT_EQ(buffer[0], 0);
  }
}

TEST(Exchange, AnEmptyRangeSucceedsWithoutAnExchange) {
  DeviceRecord record{};
  TranscriptLibrary library("");
  constexpr std::uint8_t kStarts[]{72, 73, 255};
  for (const std::uint8_t start : kStarts) {
    Buffer buffer = Request(131, {0x55, 64, start, 72, 0x11, 1});
    EXPECT_TRUE(QueryBlock(library, record, buffer));
    EXPECT_EQ(buffer, Request(131, {0x55, 64, start, 0, 0x11, 1}));
    buffer[3] = 72;
    EXPECT_TRUE(SendBlock(library, record, buffer));
    EXPECT_EQ(buffer, Request(131, {0x55, 64, start, 0, 0x11, 1}));
  }
}

TEST(Exchange, ABufferBelowOnePacketIsRefused) {
  DeviceRecord record{};
  TranscriptLibrary library("");
  for (const auto exchange : {QueryPacket, SendPacket, QueryBlock, SendBlock}) {
    for (const std::size_t size : {std::size_t{0}, std::size_t{64}}) {
      Buffer buffer(size, 0xFF);
      EXPECT_FALSE(exchange(library, record, buffer));
    }
  }
}

// The payload counts up from 1. Every chunk is the front of the caller's buffer, so behind a short
// last chunk stands what the chunk before left there.
struct SendCase {
  const char* what;
  std::uint8_t length, start, end;
  std::size_t buffer;
  std::vector<std::string> chunks;  // bytes 1 to 3
  std::vector<std::string> payloads;
};

std::vector<SendCase> SendCases() {
  const std::string first = Counting(1, 59);
  const std::string second = Counting(60, 59);
  return {
      {"60 bytes", 60, 0, 60, 66, {"3b 00 3b", "01 3b 3c"}, {first, "3c " + Counting(2, 58)}},
      {"the length byte alone decides", 60, 8, 18, 65, {"0a 08 12"}, {first}},
      {"118 bytes", 118, 16, 134, 124, {"3b 10 4b", "3b 4b 86"}, {first, second}},
      {"the third chunk comes from the second one's place",
       150,
       0,
       150,
       156,
       {"3b 00 3b", "3b 3b 76", "20 76 96"},
       {first, second, second}},
      {"past index 255 to 19",
       60,
       216,
       255,
       124,
       {"3b d8 13", "3b 13 4e", "3b 4e 89", "3b 89 c4", "3b c4 ff"},
       {first, second, second, second, second}},
  };
}

TEST(SendBlock, IsCutIntoChunksOf59BytesAndRewritesTheBuffer) {
  DeviceRecord record{};
  for (const SendCase& c : SendCases()) {
    SCOPED_TRACE(c.what);
    std::string transcript;
    for (std::size_t i = 0; i < c.chunks.size(); ++i) {
      transcript += "write 0 -> 0 : 00 " + c.chunks[i] + " 21 07 " + c.payloads[i] + "\n";
      transcript += "read 0 -> 0 : " + std::string(i + 1 < c.chunks.size() ? "99" : "21") + " *\n";
    }
    TranscriptLibrary library(transcript);
    Buffer buffer = Request(c.buffer, {0, c.length, c.start, c.end, 0x21, 7});
    const Buffer before = buffer;
    EXPECT_TRUE(SendBlock(library, record, buffer));

    // What the caller finds: the echo, and behind it the last chunk as it was sent.
    TranscriptLibrary left("write 0 -> 0 : 21 " + c.chunks.back() + " 21 07 " + c.payloads.back());
    HidPacket front;
    std::copy_n(buffer.begin(), front.size(), front.begin());
    EXPECT_EQ(left.WriteData(record, front), KVUSB_OK);
    const int rest = static_cast<int>(c.buffer) - 65;
    EXPECT_EQ(Part(buffer, 65, rest), Part(before, 65, rest));
  }
}

TEST(SendBlock, AFailedChunkEndsItAtOnce) {
  const SendCase c = SendCases()[3];
  DeviceRecord record{};
  for (std::size_t failing = 0; failing < c.chunks.size(); ++failing) {
    for (const bool by_write : {true, false}) {
      SCOPED_TRACE(std::to_string(failing) + (by_write ? " write" : " read"));
      std::string transcript;
      for (std::size_t i = 0; i <= failing; ++i) {
        const bool fails = i == failing;
        transcript += "write 0 -> " + std::string(fails && by_write ? "1" : "0") + " : 55 " +
                      c.chunks[i] + " 21 07 " + c.payloads[i] + "\n";
        if (!fails) transcript += "read 0 -> 0 : 21 *\n";
        if (fails && !by_write) transcript += "read 0 -> 1\n";
      }
      TranscriptLibrary library(transcript);
      Buffer buffer = Request(c.buffer, {0x55, c.length, c.start, c.end, 0x21, 7});
      EXPECT_FALSE(SendBlock(library, record, buffer));
      EXPECT_EQ(buffer[0], 0x55) << "byte 0 stays the caller's";
    }
  }
}

TEST(SendBlock, RefusesAPayloadThatTheBufferDoesNotHold) {
  DeviceRecord record{};
  TranscriptLibrary library("write 0 -> 0 : 00 3b 00 3b 21 07 " + Counting(1, 59) +
                            "\nread 0 -> 0 : 21 *");
  Buffer buffer = Request(65, {0, 60, 0, 60, 0x21, 7});
  EXPECT_FALSE(SendBlock(library, record, buffer));
}

}  // namespace
}  // namespace quillon
