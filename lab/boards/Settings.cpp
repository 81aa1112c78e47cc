// SPDX-License-Identifier: MIT
#include <algorithm>

#include "boards/Family.h"

namespace quillon::sim {
namespace {

constexpr std::size_t kChunkRead = 63, kChunkWrite = 59;

struct Range {
  std::size_t offset;  // into the block
  std::size_t bytes;
};

// The part of the block that the request names, or nothing when it reaches outside the block, is
// empty, holds more than a packet carries, or does not agree with the length byte.
std::optional<Range> RangeOf(const BlockCommands& block, Request request, std::size_t limit) {
  if (block.start == 0) return Range{0, block.bytes};
  const std::size_t start = request[kStartAt], end = request[kEndAt];
  if (start < block.start || end > std::size_t{block.start} + block.bytes || start >= end)
    return std::nullopt;
  const std::size_t bytes = end - start;
  if (bytes > limit || bytes != request[kLengthAt]) return std::nullopt;
  return Range{start - block.start, bytes};
}

Reply ReadBlock(const BlockCommands& block, std::span<const std::uint8_t> held, Request request) {
  const auto range = RangeOf(block, request, kChunkRead);
  if (!range) return Refuse();
  Reply reply = Plain(block.read);
  std::ranges::copy(held.subspan(range->offset, range->bytes), reply.answer.begin() + 1);
  return reply;
}

Reply WriteBlock(const BlockCommands& block, std::span<std::uint8_t> held, Request request) {
  const auto range = RangeOf(block, request, kChunkWrite);
  if (!range || request[kArgumentAt] != 1) return Refuse();
  std::ranges::copy(request.subspan(kPayloadAt, range->bytes), held.subspan(range->offset).begin());
  Reply reply = Plain(block.write);
  reply.changed = true;
  return reply;
}

}  // namespace

std::optional<Reply> AnswerSettings(Family family, Blocks& blocks, Request request) {
  const std::uint8_t command = request[kCommandAt];
  for (const BlockCommands& block : AllBlocks()) {
    if (block.family != family) continue;
    if (command == block.read) return ReadBlock(block, blocks.at(block.name), request);
    if (command == block.write) return WriteBlock(block, blocks.at(block.name), request);
  }
  return std::nullopt;
}

}  // namespace quillon::sim
