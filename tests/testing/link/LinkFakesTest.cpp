// SPDX-License-Identifier: MIT
#include <gmock/gmock.h>
#include <gtest/gtest-spi.h>

#include "devlink/Exchange.h"
#include "devlink/NoLibrary.h"
#include "kvusb/HidPacket.h"
#include "testing/link/FaultyLibrary.h"
#include "testing/link/TranscriptLibrary.h"

namespace quillon::testing {
namespace {

// A fake that lets a fault through would make every test that uses it worthless.

HidPacket Query(std::uint8_t command) {
  HidPacket packet{};
  packet[kCommandByte] = command;
  return packet;
}

TEST(TranscriptLibrary, NamesTheLineAndTheByteThatDiffers) {
  DeviceRecord record{};
  HidPacket packet = Query(0x11);
  packet[64] = 0x5A;
  const auto play = [&] {
    TranscriptLibrary library("\nwrite 0 -> 0 : 00 00 00 00 12 *\nread 0 -> 0 : 12 *");
    EXPECT_FALSE(SendPacket(library, record, packet));
    EXPECT_FALSE(SendPacket(library, record, packet));  // only the first difference is told
  };
  EXPECT_NONFATAL_FAILURE(play(), "Transcript line 2\n  expected: write 0 : 00 00 00 00 12 *");
  EXPECT_NONFATAL_FAILURE(play(), "differs in byte 4 64");
}

TEST(TranscriptLibrary, RefusesEveryOtherCall) {
  std::vector<DeviceRecord> table(2);
  const auto play = [&](const char* expected, auto&& calls) {
    TranscriptLibrary library(expected);
    calls(library);
  };
  const auto write = [&](HidLibrary& library) {
    HidPacket packet{};
    static_cast<void>(library.WriteData(table[0], packet));
  };
  const auto detect = [&](HidLibrary& library) {
    std::uint32_t count = 0;
    library.DetectHID(count, table, 3);
  };
  const auto second_board = [&](HidLibrary& library) {
    detect(library);
    HidPacket packet{};
    static_cast<void>(library.ReadData(table[1], packet));
  };
  const auto close = [&](HidLibrary& library) { library.CloseDevices(table); };
  const auto none = [](HidLibrary&) {};
  const auto next_part = [](TranscriptLibrary& library) {
    library.Expect("close 0 -> 1");
    EXPECT_EQ(library.CloseDevices({}), 0);
  };
  EXPECT_NONFATAL_FAILURE(play("", write), "The transcript has ended");
  EXPECT_NONFATAL_FAILURE(play("read 0 -> 0 : *", write), "expected: read 0\n");
  EXPECT_NONFATAL_FAILURE(play("detect 2 -> 0", detect), "got:      detect 3");
  EXPECT_NONFATAL_FAILURE(play("detect 3 -> 0\nread 0 -> 0 : *", second_board), "line 2");
  EXPECT_NONFATAL_FAILURE(play("close 1 -> 1", close), "got:      close 2");
  EXPECT_NONFATAL_FAILURE(play("close 1 -> 1", none), "nothing more");
  EXPECT_NONFATAL_FAILURE(play("close 0 -> 0", next_part), "nothing more");
  EXPECT_NONFATAL_FAILURE(play("close 1 -> 1\nclsoe 1 -> 1", none), "Line 2 is no call");
}

// Answers every command with its echo and two data bytes, and counts what reaches it.
class EchoLibrary : public NoLibrary {
 public:
  std::int32_t WriteData(DeviceRecord&, PacketSpan p) override {
    ++writes;
    command_ = p[kCommandByte];
    return KVUSB_OK;
  }
  std::int32_t ReadData(DeviceRecord&, PacketSpan p) override {
    ++reads;
    p[0] = command_;
    p[1] = 0xA1;
    p[2] = 0xA2;
    return KVUSB_OK;
  }

  int writes = 0;
  int reads = 0;

 private:
  std::uint8_t command_ = 0;
};

TEST(FaultyLibrary, StrikesTheCallsThatWereNamedAndNoOther) {
  EchoLibrary board;
  FaultyLibrary faulty(board);
  faulty.FailRead({.nth = 2, .command = 0x11});
  faulty.FailWrite({.nth = 3, .command = 0x12, .onwards = true});
  faulty.FailWrite({.nth = 8}, 2);
  DeviceRecord record{};
  std::string outcome;
  constexpr std::uint8_t kCommands[]{0x11, 0x12, 0x12, 0x11, 0x11, 0x12, 0x12, 0x11};
  for (const std::uint8_t command : kCommands) {
    HidPacket packet = Query(command);
    outcome += SendPacket(faulty, record, packet) && packet[1] == 0xA1 ? '+' : '-';
  }
  EXPECT_EQ(outcome, "+++-+--+");
  // A failed write and the one with a code of its own never arrived; a lost answer had been given.
  EXPECT_EQ(board.writes, 5);
  EXPECT_EQ(board.reads, 6);
}

TEST(FaultyLibrary, ChangesAnAnswerOnItsWay) {
  EchoLibrary board;
  FaultyLibrary faulty(board);
  int events = 0;
  faulty.AnswerShort({.nth = 1}, 2);
  faulty.AnswerWithEcho({.nth = 2}, 0x7F);
  faulty.BeforeWrite({.nth = 3}, [&] { events += board.writes; });
  faulty.BeforeRead({.nth = 3}, [&] { events += board.reads * 10; });
  DeviceRecord record{};

  HidPacket packet = Query(0x11);
  packet[2] = 0x33;
  EXPECT_TRUE(QueryPacket(faulty, record, packet));
  EXPECT_EQ(packet, (HidPacket{0x11, 0xA1, 0x33, 0x00, 0x11}));
  packet = Query(0x11);
  EXPECT_TRUE(QueryPacket(faulty, record, packet));
  EXPECT_EQ(packet, (HidPacket{0x7F, 0xA1, 0xA2, 0x00, 0x11}));
  EXPECT_TRUE(QueryPacket(faulty, record, packet));
  EXPECT_EQ(events, 22);
}

TEST(FaultyLibrary, ReportsAFaultThatNeverStruck) {
  EchoLibrary board;
  const auto forget = [&](bool drop) {
    FaultyLibrary faulty(board);
    faulty.FailRead({});
    return drop && faulty.DropUnstruck();
  };
  EXPECT_NONFATAL_FAILURE(forget(false), "never struck");
  EXPECT_TRUE(forget(true));
}

}  // namespace
}  // namespace quillon::testing
