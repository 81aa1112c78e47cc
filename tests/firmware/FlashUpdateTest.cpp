// SPDX-License-Identifier: MIT
#include <gmock/gmock.h>

#include <numeric>
#include <string>
#include <vector>

#include "firmware/FlashUpdate.h"
#include "testing/link/TranscriptLibrary.h"

// What a run sends and tells. Where faults and aborts lead, the tests of its page say.
namespace quillon {
namespace {

using ::testing::ElementsAre;
using testing::TranscriptLibrary;

// Keeps what a run tells.
class FlashLog : public FlashObserver {
 public:
  void OnText(std::string_view text) override { events.emplace_back(text); }
  void OnProgressRange(int records) override {
    events.push_back("range " + std::to_string(records));
  }
  void OnProgress(int position) override {
    events.push_back("progress " + std::to_string(position));
  }
  bool AbortRequested() override { return false; }
  void Pump() override { events.emplace_back("pump"); }

  std::vector<std::string> events;
};

// The answers carry bytes of their own, so that it shows which of them stay in the packet.
TEST(FlashUpdate, SendsEraseRecordsAndFinishInOnePacket) {
  TranscriptLibrary library(R"(
    write 0 -> 0 : 00 00 00 00 08 *
    read 0 -> 0 : 08 e1 e2 e3 e4 e5 e6 e7 e8 e9 *
    write 0 -> 0 : 00 03 00 01 00 00 aa bb cc *
    read 0 -> 0 : 00 a1 a2 a3 a4 a5 a6 *
    write 0 -> 0 : 00 3b 3b 20 42 00 01 02 03 04 05 06 07 08 09 0a 0b 0c 0d 0e 0f 10 11 12 13 14 15 16 17 18 19 1a 1b 1c 1d 1e 1f 20 21 22 23 24 25 26 27 28 29 2a 2b 2c 2d 2e 2f 30 31 32 33 34 35 36 37 38 39 3a 3b
    read 0 -> 0 : 42 b1 b2 b3 b4 b5 b6 07 08 09 0a 0b 0c 0d 0e 0f 10 11 12 13 14 15 16 17 18 19 1a 1b 1c 1d 1e 1f 20 21 22 23 24 25 26 27 28 29 2a 2b 2c 2d 2e 2f 30 31 32 33 34 35 36 37 38 39 3a 3b 3c 3d 3e 3f 3b
    write 0 -> 0 : 00 b1 b2 b3 01 b5 b6 07 08 09 0a 0b 0c 0d 0e 0f 10 11 12 13 14 15 16 17 18 19 1a 1b 1c 1d 1e 1f 20 21 22 23 24 25 26 27 28 29 2a 2b 2c 2d 2e 2f 30 31 32 33 34 35 36 37 38 39 3a 3b 3c 3d 3e 3f 3b
    read 0 -> 0 : 05 *)");
  KvxImage image;
  image.device_id = 0x0910;
  image.records = {{3, 0x00, 0x01, 0, {0xAA, 0xBB, 0xCC}}, {59, 0x3B, 0x20, 0x42, {}}};
  std::iota(image.records[1].data.begin(), image.records[1].data.end(), std::uint8_t{1});

  DeviceRecord board{};
  board.product_id = 0x0910;
  FlashLog log;
  EXPECT_EQ(FlashUpdate(library, board, image, log).Run(), FlashResult::kCompleted);
  EXPECT_THAT(log.events,
              ElementsAre("\r\n\r\nErasing Device . . . ", "Completed.\r\n",
                          "Beginning flash update . . . ", "range 2", "progress 0", "progress 1",
                          "pump", "progress 2", "pump", "\r\nFlash Update Complete!\r\n"));
}

TEST(FlashUpdate, SendsAndSaysNothingForAnotherProductOrForNodes) {
  const struct {
    std::uint16_t device_id, node_version;
    FlashResult result;
  } cases[] = {
      {0x0910, 0, FlashResult::kWrongDevice},
      {0x0800, 0x0130, FlashResult::kWrongDevice},
      {0x0800, 0, FlashResult::kFailed},  // sent, and lost
  };
  for (const auto& c : cases) {
    const bool sent = c.result != FlashResult::kWrongDevice;
    TranscriptLibrary library(sent ? "write 0 -> 1 : 00 00 00 00 08 *" : "");
    DeviceRecord board{};
    board.product_id = 0x0800;
    KvxImage image;
    image.device_id = c.device_id;
    image.node_version = c.node_version;
    FlashLog log;
    EXPECT_EQ(FlashUpdate(library, board, image, log).Run(), c.result) << c.device_id;
    EXPECT_EQ(log.events.empty(), !sent) << c.device_id;
  }
}

}  // namespace
}  // namespace quillon
