// SPDX-License-Identifier: MIT
#pragma once

#include <cstdint>
#include <string_view>

#include "firmware/KvxImage.h"
#include "kvusb/HidLibrary.h"
#include "kvusb/HidPacket.h"

namespace quillon {

// What a run reports while it goes on, and what it asks.
class FlashObserver {
 public:
  FlashObserver() = default;
  FlashObserver(const FlashObserver&) = delete;
  FlashObserver& operator=(const FlashObserver&) = delete;
  virtual ~FlashObserver() = default;

  // Text for the end of the log, to be shown as it is; lines end with \r\n.
  virtual void OnText(std::string_view text) = 0;
  // The records begin: from here on progress counts from 0 to `records`.
  virtual void OnProgressRange(int records) = 0;
  virtual void OnProgress(int position) = 0;
  // Asked before each record.
  virtual bool AbortRequested() = 0;
  // Called after each record. The only place in a run where other events are handled.
  virtual void Pump() = 0;
};

enum class FlashResult {
  kCompleted,
  kAborted,
  kFailed,
  kWrongDevice,  // the image is for another product or for nodes; nothing was sent and nothing said
};

// Writes an image into a board that runs its loader: erase, the records in the order of the file,
// finish. Runs on the caller's thread; library, board, image and observer outlive the run.
//
// A run that fails or is aborted leaves the board in Flash Mode, without valid firmware, and ready
// to be programmed from the start. An abort takes effect before the next record, so one that comes
// during the last record is too late.
//
// One packet serves the whole run, and each command sets only the bytes that it needs. So the bytes
// of an erase and of a finish from byte 5 on are left over from the exchange before.
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
