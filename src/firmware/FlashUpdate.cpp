// SPDX-License-Identifier: MIT
#include "firmware/FlashUpdate.h"

#include <algorithm>

#include "devlink/Exchange.h"

namespace quillon {
namespace {

constexpr std::uint8_t kFinish = 1;
constexpr std::uint8_t kErase = 8;

// Places in a record command beside those of every request.
constexpr std::size_t kAddressLowByte = 2, kAddressHighByte = 3;

// Statuses in byte 0 of an answer. Any other value is no error.
constexpr std::uint8_t kCommandFail = 2, kFlashFail = 4, kConfigFail = 5, kEepromFail = 6;

std::string_view ErrorText(std::uint8_t status) {
  switch (status) {
    case kCommandFail:
      return "\r\nError Code: CMD_FAIL!\r\n";
    case kFlashFail:
      return "\r\nError Code: FLASH_FAIL!\r\n";
    case kConfigFail:
      return "\r\nError Code: CONFIG_FAIL!\r\n";
    case kEepromFail:
      return "\r\nError Code: EEPROM_FAIL!\r\n";
    default:
      return {};
  }
}

}  // namespace

FlashUpdate::FlashUpdate(HidLibrary& library, DeviceRecord& board, const KvxImage& image,
                         FlashObserver& observer)
    : library_(library), board_(board), image_(image), observer_(observer) {}

FlashResult FlashUpdate::Run() {
  // A node's image has its board's device id, but would leave the board without firmware.
  const bool fits = image_.device_id == board_.product_id && !image_.IsForNodes();
  if (!fits) return FlashResult::kWrongDevice;
  packet_ = {};
  if (!Erase() || !SendRecords()) return Stopped();
  // The answer is left alone on purpose: the board's next report shows what it made of its image.
  static_cast<void>(Exchange(kFinish));
  observer_.OnText("\r\nFlash Update Complete!\r\n");
  return FlashResult::kCompleted;
}

bool FlashUpdate::Erase() {
  observer_.OnText("\r\n\r\nErasing Device . . . ");
  if (!Exchange(kErase) || packet_[kEchoByte] == kCommandFail) {
    observer_.OnText("Erase failed!\r\n");
    return false;
  }
  observer_.OnText("Completed.\r\n");
  return true;
}

bool FlashUpdate::SendRecords() {
  observer_.OnText("Beginning flash update . . . ");
  observer_.OnProgressRange(static_cast<int>(image_.records.size()));
  observer_.OnProgress(0);
  int position = 0;
  for (const KvxRecord& record : image_.records) {
    if (observer_.AbortRequested()) {
      observer_.OnText("Aborted!");
      return false;
    }
    observer_.OnProgress(++position);
    if (!SendRecord(record)) return false;
    observer_.Pump();
  }
  return true;
}

bool FlashUpdate::SendRecord(const KvxRecord& record) {
  packet_[kLengthByte] = record.length;
  packet_[kAddressLowByte] = record.address_low;
  packet_[kAddressHighByte] = record.address_high;
  packet_[kArgumentByte] = 0;
  std::ranges::copy(record.data, packet_.begin() + kPayloadByte);
  const bool exchanged = Exchange(record.type);
  const std::string_view error = ErrorText(packet_[kEchoByte]);
  if (!error.empty()) observer_.OnText(error);
  return exchanged && error.empty();
}

bool FlashUpdate::Exchange(std::uint8_t command) {
  packet_[kEchoByte] = 0;
  packet_[kCommandByte] = command;
  return SendPacket(library_, board_, packet_);
}

FlashResult FlashUpdate::Stopped() {
  if (!observer_.AbortRequested()) {
    observer_.OnText("\r\nFlash Update Failure!\r\n");
    return FlashResult::kFailed;
  }
  observer_.OnText("\r\nFlash Update Aborted!\r\n");
  observer_.OnProgress(0);
  return FlashResult::kAborted;
}

}  // namespace quillon
