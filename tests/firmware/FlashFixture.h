// SPDX-License-Identifier: MIT
#pragma once

#include <gmock/gmock.h>

#include <string>
#include <string_view>
#include <utility>
#include <vector>

#include "firmware/FlashUpdate.h"
#include "lab/sim/SimFixture.h"
#include "sim/Bus.h"
#include "testing/link/FaultyLibrary.h"

namespace quillon {

inline const std::string kErasing = "\r\n\r\nErasing Device . . . ";
inline const std::string kBegun = kErasing + "Completed.\r\nBeginning flash update . . . ";
inline const std::string kComplete = "\r\nFlash Update Complete!\r\n";
inline const std::string kFailure = "\r\nFlash Update Failure!\r\n";
inline const std::string kAborted = "\r\nFlash Update Aborted!\r\n";

// Keeps what a run tells, and aborts it after so many records.
class FlashLog : public FlashObserver {
 public:
  explicit FlashLog(int abort_after = -1) : abort_after_(abort_after) {}

  void OnText(std::string_view text) override {
    log += text;
    events.emplace_back(text);
  }
  void OnProgressRange(int records) override {
    events.push_back("range " + std::to_string(records));
  }
  void OnProgress(int position) override {
    progress = position;
    events.push_back("progress " + std::to_string(position));
  }
  bool AbortRequested() override { return abort_after_ == pumped; }
  void Pump() override {
    ++pumped;
    events.emplace_back("pump");
  }

  std::string log;
  std::vector<std::string> events;
  int progress = -1;
  int pumped = 0;

 private:
  int abort_after_;
};

// A record with these data at this address.
inline KvxRecord RecordAt(std::uint16_t address, const std::vector<std::uint8_t>& data,
                          std::uint8_t type = 0) {
  KvxRecord record;
  record.length = static_cast<std::uint8_t>(data.size());
  record.address_low = static_cast<std::uint8_t>(address & 0xFF);
  record.address_high = static_cast<std::uint8_t>(address >> 8);
  record.type = type;
  std::ranges::copy(data, record.data.begin());
  return record;
}

// A simulated board in Flash Mode with old firmware, and an image of version 2.83 for it.
class FlashFixture {
 public:
  static constexpr int kRecords = 12;

  FlashFixture()
      : board(R"("product": "0x0910", "firmware": "2.71", "mode": "flash")"), faulty(board.bus) {
    image.device_id = 0x0910;
    for (int i = 0; i < kRecords; ++i) {
      std::vector<std::uint8_t> data(59, static_cast<std::uint8_t>(i));
      if (i == 0) data[0] = 0x02, data[1] = 0x83;
      image.records.push_back(RecordAt(static_cast<std::uint16_t>(i * 59), data));
      contents.insert(contents.end(), data.begin(), data.end());
    }
  }

  FlashResult Run(FlashLog& log) { return FlashUpdate(faulty, board.record, image, log).Run(); }

  // What has to hold after a run that ended in any way: the board is there, in Flash Mode, and a
  // second run brings it the image, with which it starts.
  void ExpectProgrammable() {
    const sim::BoardState& state = board.TheBoard().State();
    EXPECT_TRUE(state.flash_mode);
    board.bus.Plug("b");
    EXPECT_EQ(board.Detect(), std::uint32_t{KVUSB_TYPE_LOADER}) << "not listed in Flash Mode";
    FlashLog log;
    EXPECT_EQ(Run(log), FlashResult::kCompleted);
    EXPECT_EQ(log.log, kBegun + kComplete);
    EXPECT_EQ(state.flash.bytes, contents);
    EXPECT_TRUE(state.flash.valid);
    board.Ask({0, 0, 0, 0, 0xFF});
    EXPECT_EQ(board.Detect(), std::uint32_t{KVUSB_TYPE_FIRMWARE});
    EXPECT_EQ(board.record.version, 0x0283);
  }

  sim::SimFixture board;
  testing::FaultyLibrary faulty;
  KvxImage image;
  std::vector<std::uint8_t> contents;  // of the flash, once the image is in it
};

}  // namespace quillon
