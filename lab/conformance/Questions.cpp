// SPDX-License-Identifier: MIT
#include "conformance/Questions.h"

#include "devlink/Products.h"

namespace quillon::conformance {
namespace {

HidPacket Whole(std::uint8_t command) {
  HidPacket packet{};
  packet[kCommandByte] = command;
  return packet;
}

// Blocks that travel in chunks are asked for with a range of their table.
HidPacket Chunk(std::uint8_t command, std::uint8_t start, std::uint8_t length) {
  HidPacket packet = Whole(command);
  packet[kLengthByte] = length;
  packet[kStartByte] = start;
  packet[kEndByte] = static_cast<std::uint8_t>(start + length);
  return packet;
}

}  // namespace

std::vector<HidPacket> HarmlessQuestions(std::uint32_t type, std::uint16_t product_id) {
  if (type == KVUSB_TYPE_LOADER) return {Whole(kIdentityQuery)};
  const BoardFamily family = FamilyOf(product_id);
  if (type == KVUSB_TYPE_FIRMWARE_ID) {
    if (family == BoardFamily::kSpi) return {Whole(kIdentityQuery), Whole(0x14)};
    return {Whole(kIdentityQuery)};
  }
  switch (family) {
    case BoardFamily::kJoystick:
    case BoardFamily::kSmallJoystick:
      return {Whole(0x11), Whole(0x13)};
    case BoardFamily::kScanMatrix:
    case BoardFamily::kInputBanks:
      return {Chunk(0x12, 0x08, 30), Whole(0x14)};
    case BoardFamily::kDigitalPorts:
      return {Whole(0x17)};
    default:
      return {};
  }
}

}  // namespace quillon::conformance
