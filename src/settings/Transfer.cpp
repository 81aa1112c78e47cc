// SPDX-License-Identifier: MIT
#include "settings/Transfer.h"

#include <algorithm>
#include <array>

#include "devlink/Exchange.h"
#include "kvusb/HidPacket.h"

namespace quillon {
namespace {

using End = TransferResult::End;

// A node's block: the command is the board's, the function and the node stand behind it.
//
//            +---+-------+-------+------+------+------+----------+------+-------+---------+
//   request  | 0 | length| start | size | 0x1C | write| function | node | count | data ...|
//            +---+-------+-------+------+------+------+----------+------+-------+---------+
constexpr std::uint8_t kNodeCommand = 0x1C;
constexpr std::size_t kFunctionByte = 6, kNodeByte = 7, kCountByte = 8, kNodeDataByte = 9;

// Room for the longer header and two chunks, the most that SendBlock() sends as it should.
using Buffer = std::array<std::uint8_t, kPayloadByte + 2 * kSendChunk>;

struct Request {
  Buffer packet{};
  std::size_t payload = kPayloadByte;
};

Request RequestFor(const Block& block, bool write, NodePort about) {
  Request request;
  Buffer& packet = request.packet;
  const std::uint8_t code = write ? block.write : block.read;
  packet[kCommandByte] = code;
  if (write) packet[kArgumentByte] = kWriteArgument;
  if (block.way == Way::kRange) {
    packet[kLengthByte] = block.bytes;
    packet[kStartByte] = block.start;
    packet[kEndByte] = block.end;
  } else if (block.way == Way::kNode) {
    packet[kLengthByte] = write ? block.bytes : 0;
    packet[kStartByte] = about.half == 0 ? block.start : block.end;
    packet[kEndByte] = block.bytes;
    packet[kCommandByte] = kNodeCommand;
    packet[kFunctionByte] = code;
    packet[kNodeByte] = about.node;
    packet[kCountByte] = write ? 0 : block.bytes;
    request.payload = kNodeDataByte;
  }
  return request;
}

}  // namespace

TransferResult ReadBlock(HidLibrary& library, DeviceRecord& board, const Block& block,
                         std::span<std::uint8_t> bytes, NodePort about) {
  auto [packet, payload] = RequestFor(block, false, about);
  if (!QueryBlock(library, board, packet)) return {};
  if (packet[kEchoByte] != block.read) return {.end = End::kRefused};
  std::copy_n(packet.begin() + kDataByte, bytes.size(), bytes.begin());
  return {.end = End::kDone, .bytes = bytes.size()};
}

TransferResult WriteBlock(HidLibrary& library, DeviceRecord& board, const Block& block,
                          std::span<const std::uint8_t> bytes, NodePort about) {
  auto [packet, payload] = RequestFor(block, true, about);
  std::ranges::copy(bytes, packet.begin() + static_cast<std::ptrdiff_t>(payload));
  const bool answered = SendBlock(library, board, packet);
  if (answered && packet[kEchoByte] == block.write)
    return {.end = End::kDone, .bytes = bytes.size()};
  if (!block.write_checked) return {.end = End::kDone};
  // A send in packets leaves the start of the last one, and the board has those before.
  const int gone = block.way == Way::kRange ? packet[kStartByte] - block.start : 0;
  return {.end = answered ? End::kRefused : End::kNotTransported,
          .bytes = static_cast<std::size_t>(gone)};
}

}  // namespace quillon
