// SPDX-License-Identifier: MIT
//
// A HID library with one board that answers at once: every byte of an answer is the first byte of
// its record.
#include <algorithm>
#include <cstdint>

#include "kvusb/kvusb.h"

namespace {

constexpr std::size_t kCommand = 4;
constexpr std::uint16_t kProduct = 0x0510;
std::uint8_t command = 0;

}  // namespace

extern "C" {

KVUSB_EXPORT std::int32_t KVUSB_CALL DetectHID(std::uint32_t* count, DeviceRecord* first,
                                               std::uint32_t type) {
  *count = type == KVUSB_TYPE_FIRMWARE ? 1 : 0;
  if (*count == 0) return 0;
  *first = {};
  first->product_id = kProduct;
  return 1;
}

KVUSB_EXPORT std::int32_t KVUSB_CALL WriteData(DeviceRecord* /*record*/, std::uint8_t* packet) {
  command = packet[kCommand];
  return KVUSB_OK;
}

KVUSB_EXPORT std::int32_t KVUSB_CALL ReadData(DeviceRecord* record, std::uint8_t* packet) {
  packet[0] = command;
  std::fill_n(packet + 1, KVUSB_PACKET_BYTES - 2, record->library_a[0]);
  return KVUSB_OK;
}

KVUSB_EXPORT std::int32_t KVUSB_CALL CloseDevices(std::uint32_t /*count*/,
                                                  DeviceRecord* /*first*/) {
  return 1;
}

}  // extern "C"
