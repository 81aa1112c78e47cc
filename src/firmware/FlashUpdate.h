// SPDX-License-Identifier: MIT
#pragma once

#include <cstdint>
#include <string_view>

#include "firmware/KvxImage.h"
#include "kvusb/HidLibrary.h"
#include "kvusb/HidPacket.h"

namespace quillon {

// What a run tells of itself while it goes on, and what it asks.
class FlashObserver {
 public:
  FlashObserver() = default;
  FlashObserver(const FlashObserver&) = delete;
  FlashObserver& operator=(const FlashObserver&) = delete;
  virtual ~FlashObserver() = default;

  // Goes to the end of the log as it is; lines end with \r\n.
  virtual void OnText(std::string_view text) = 0;
  // The records begin: from here on progress counts from 0 to `records`.
  virtual void OnProgressRange(int records) = 0;
  virtual void OnProgress(int position) = 0;
  // Asked before each record.
  virtual bool AbortRequested() = 0;
  // After each record: the one place in a run where other events get their turn.
  virtual void Pump() = 0;
};

enum class FlashResult {
  kCompleted,
  kAborted,
  kFailed,
  kWrongDevice,  // the image is for another product; nothing was sent and nothing said
};

// Writes an image into a board that runs its loader: erase, the records in the order of the file,
// finish. All on the caller's thread; library, board, image and observer outlive the run.
//
// A run that fails or is aborted leaves the board in Flash Mode, without valid firmware, and ready
// to be programmed from the start. An abort takes effect before the next record, so one that comes
// during the last record is too late.
//
// One packet serves the whole run, and a command sets only what it needs: erase and finish carry
// what the exchange before has left behind their first five bytes.
class FlashUpdate {
 public:
  FlashUpdate(HidLibrary& library, DeviceRecord& board, const KvxImage& image,
              FlashObserver& observer);

  FlashResult Run();

 private:
  bool Erase();
  bool SendRecords();
  bool SendRecord(const KvxRecord& record);
  bool Exchange(std::uint8_t command);
  FlashResult Stopped();

  HidLibrary& library_;
  DeviceRecord& board_;
  const KvxImage& image_;
  FlashObserver& observer_;
  HidPacket packet_{};
};

}  // namespace quillon
