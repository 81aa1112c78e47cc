// SPDX-License-Identifier: MIT
#include "firmware/SerialNumber.h"

#include <algorithm>

#include "devlink/Exchange.h"
#include "kvusb/HidPacket.h"

namespace quillon {
namespace {

constexpr std::uint8_t kSetSerialNumber = 7;

}  // namespace

bool IsSerialNumber(std::string_view text) {
  return text.size() >= kSerialDigits &&
         std::ranges::all_of(text.substr(0, kSerialDigits),
                             [](char c) { return c >= '0' && c <= '9'; });
}

SerialResult SetSerial(HidLibrary& library, DeviceRecord& board, std::string_view text) {
  if (!IsSerialNumber(text)) return SerialResult::kInvalid;
  HidPacket packet{};
  packet[kCommandByte] = kSetSerialNumber;
  std::ranges::copy(text.substr(0, kSerialDigits), packet.begin() + kPayloadByte);
  const bool exchanged = SendPacket(library, board, packet);
  const bool refused = exchanged && packet[kEchoByte] != kSetSerialNumber;
  return refused ? SerialResult::kRefused : SerialResult::kSet;
}

}  // namespace quillon
