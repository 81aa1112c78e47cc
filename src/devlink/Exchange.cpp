// SPDX-License-Identifier: MIT
#include "devlink/Exchange.h"

#include <algorithm>

namespace quillon {
namespace {

bool ExchangePacket(HidLibrary& library, DeviceRecord& record, std::span<std::uint8_t> packet,
                    ReadAfter after) {
  const auto result = library.Exchange(record, packet.first<KVUSB_PACKET_BYTES>(), after);
  return result != KVUSB_READ_FAILED && result != KVUSB_READ_TIMEOUT;
}

bool HoldsPacket(std::span<std::uint8_t> buffer) { return buffer.size() >= KVUSB_PACKET_BYTES; }

// The end of the chunk that begins at `start`. Indexes are 8 bits wide and wrap around.
std::uint8_t ChunkEnd(std::uint8_t start, std::size_t size, std::uint8_t end) {
  return std::min(static_cast<std::uint8_t>(start + size), end);
}

}  // namespace

bool QueryPacket(HidLibrary& library, DeviceRecord& record, std::span<std::uint8_t> packet) {
  return HoldsPacket(packet) && ExchangePacket(library, record, packet, ReadAfter::kAnyWrite);
}

bool SendPacket(HidLibrary& library, DeviceRecord& record, std::span<std::uint8_t> packet) {
  return HoldsPacket(packet) && ExchangePacket(library, record, packet, ReadAfter::kGoodWrite);
}

bool QueryBlock(HidLibrary& library, DeviceRecord& record, std::span<std::uint8_t> packet) {
  if (!HoldsPacket(packet)) return false;
  if (packet[kLengthByte] <= kQueryChunk) return QueryPacket(library, record, packet);

  const std::uint8_t command = packet[kCommandByte];
  const std::uint8_t end = packet[kEndByte];
  std::uint8_t start = packet[kStartByte];
  std::size_t out = kDataByte;
  packet[kEndByte] = 0;
  while (start < end) {
    HidPacket chunk{};
    const std::uint8_t chunk_end = ChunkEnd(start, kQueryChunk, end);
    const auto size = static_cast<std::uint8_t>(chunk_end - start);
    chunk[kLengthByte] = size;
    chunk[kStartByte] = start;
    chunk[kEndByte] = chunk_end;
    chunk[kCommandByte] = command;
    if (out + size > packet.size() || !QueryPacket(library, record, chunk)) {
      packet[kEchoByte] = 0;
      return false;
    }
    std::copy_n(chunk.begin() + kDataByte, size, packet.begin() + static_cast<std::ptrdiff_t>(out));
    out += size;
    start = chunk_end;
    packet[kEchoByte] = chunk[kEchoByte];
  }
  return true;
}

bool SendBlock(HidLibrary& library, DeviceRecord& record, std::span<std::uint8_t> packet) {
  if (!HoldsPacket(packet)) return false;
  if (packet[kLengthByte] <= kSendChunk) return SendPacket(library, record, packet);

  const std::uint8_t end = packet[kEndByte];
  std::uint8_t start = packet[kStartByte];
  std::size_t source = kPayloadByte;
  HidPacket chunk{};
  bool sent = false;
  packet[kEndByte] = 0;
  while (start < end) {
    const std::uint8_t chunk_end = ChunkEnd(start, kSendChunk, end);
    const auto size = static_cast<std::uint8_t>(chunk_end - start);
    if (source + size > packet.size()) return false;
    packet[kStartByte] = start;
    packet[kEndByte] = chunk_end;
    packet[kLengthByte] = size;
    // The first chunk's data are in their place already.
    const auto data = packet.subspan(source, size);
    if (source != kPayloadByte) std::copy(data.begin(), data.end(), packet.begin() + kPayloadByte);
    // Not a running total: see the header.
    source = kPayloadByte + size;
    std::copy_n(packet.begin(), chunk.size(), chunk.begin());
    if (!SendPacket(library, record, chunk)) return false;
    sent = true;
    start = chunk_end;
  }
  if (sent) packet[kEchoByte] = chunk[kEchoByte];
  return true;
}

}  // namespace quillon
