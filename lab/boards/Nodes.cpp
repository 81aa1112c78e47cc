// SPDX-License-Identifier: MIT
#include "boards/Nodes.h"

#include <algorithm>
#include <utility>

namespace quillon::sim {
namespace {

constexpr std::uint8_t kNodeCommand = 0x1C, kNodeStatus = 0x1D;
constexpr std::size_t kFunctionAt = 6, kNodeAt = 7, kReadCountAt = 8, kDataAt = 9;
constexpr std::uint8_t kRecord = 0, kFinish = 1, kErase = 8, kAddressBegin = 7, kAddressEnd = 9;
constexpr std::size_t kMostRecordBytes = 56;  // a packet ends after them

constexpr auto kPortBlocks = std::to_array<PortBlock>({
    {"ports", 0x25, 0x26, 6, 2},
    {"outputs", 0x27, 0x28, 10, 15},
    {"displays", 0x34, 0x35, 40, 1},
    {"dacs", 0x14, 0x10, 42, 10},
});

Reply PortSettings(NodeMemory& memory, Request request) {
  const std::uint8_t function = request[kFunctionAt], offset = request[kStartAt];
  for (const PortBlock& block : kPortBlocks) {
    if (function != block.read && function != block.write) continue;
    const bool known = offset == block.offset || offset == block.offset + block.bytes;
    if (!known || request[kEndAt] != block.bytes) return Refuse();
    const auto held = std::span(memory).subspan(offset, block.bytes);
    Reply reply = Plain(function);
    if (function == block.read) {
      if (request[kReadCountAt] != block.bytes) return Refuse();
      std::ranges::copy(held, reply.answer.begin() + 1);
    } else {
      if (request[kLengthAt] != block.bytes || request[kArgumentAt] != 1) return Refuse();
      std::ranges::copy(request.subspan(kDataAt, block.bytes), held.begin());
      reply.changed = true;
    }
    return reply;
  }
  return Refuse();
}

void PutWord(Answer& answer, std::size_t at, std::uint16_t word) {
  answer[at] = static_cast<std::uint8_t>(word >> 8);
  answer[at + 1] = static_cast<std::uint8_t>(word & 0xFF);
}

}  // namespace

std::span<const PortBlock> PortBlocks() { return kPortBlocks; }

NodeMemory FactoryNodeMemory() {
  NodeMemory memory{};
  memory[6] = 0x01;  // first port: on, output, direct
  memory[8] = 0x19;  // second port: on, output, SPI mode
  for (std::size_t i = 10; i < 40; i += 3) memory[i] = 0x01;
  memory[42] = 0x53;  // HI, 16; two bits that nobody edits
  memory[43] = 0x92;  // MID, 16
  memory[44] = 0x31;  // LO, 32
  memory[52] = 0xE1;  // LO, 24
  memory[53] = 0x33;  // HI, 32
  return memory;
}

void NodeBus::MoveCards() {
  ++status_queries_;
  for (std::size_t i = 0; i < kCardCount; ++i) {
    Card& card = cards_[i];
    if (std::ranges::find(card.moves, status_queries_) == card.moves.end()) continue;
    card.plugged = !card.plugged;
    // A card that is pulled has no power.
    std::fill_n(sessions_.begin() + static_cast<std::ptrdiff_t>((i + 1) * kNodesTogether),
                kNodesTogether, Session());
  }
}

bool NodeBus::IsThere(const Nodes& nodes, std::size_t number) const {
  if (number >= nodes.size() || !nodes[number].active) return false;
  return number < kNodesTogether || cards_[number / kNodesTogether - 1].plugged;
}

Reply NodeBus::Status(const Nodes& nodes) const {
  Reply reply = Plain(kNodeStatus);
  reply.answer[1] = eeprom_ ? 1 : 0;
  std::size_t at = 2;
  for (std::size_t i = 0; i < nodes.size(); ++i) {
    const bool there = IsThere(nodes, i);
    reply.answer[at] = there ? 1 : 0;
    PutWord(reply.answer, at + 1, there ? nodes[i].loader_version : kNoFirmware);
    PutWord(reply.answer, at + 3, there ? nodes[i].flash_version : kNoFirmware);
    at += 5;
  }
  return reply;
}

Reply NodeBus::StoreRecord(Node& node, Request request) const {
  const std::size_t length = request[kLengthAt];
  const std::size_t address = request[kStartAt] | std::size_t{request[kEndAt]} << 8;
  if (length > kMostRecordBytes) return Plain(kCrcFail);
  if (address + length > flash_bytes_) return Plain(kFlashFail);
  node.flash.Store(address, request.subspan(kDataAt, length));
  return Plain(kRecord);
}

Reply NodeBus::Flash(Node& node, Session& session, Request request) const {
  const std::uint8_t function = request[kFunctionAt];
  Reply reply = Plain(function);
  reply.changed = true;
  if (function == kErase) {
    node.flash = {};
    node.flash_version = kNoFirmware;
    session = {.erased = true};
    reply.busy = erase_time_;
    return reply;
  }
  if (!session.erased) return Plain(kCommandFail);
  if (function == kRecord) {
    const Reply stored = StoreRecord(node, request);
    if (stored.answer[0] != kRecord) session.lacks_record = true;
    return stored;
  }
  session.erased = false;
  const auto version = static_cast<std::uint16_t>(request[kStartAt] | request[kEndAt] << 8);
  const bool whole = !node.flash.bytes.empty() && !session.lacks_record;
  if (!whole || version == 0 || version == kNoFirmware) return Plain(kConfigFail);
  node.flash_version = version;
  return reply;
}

Reply NodeBus::Address(Nodes& nodes, std::size_t number, std::uint8_t function) {
  const std::size_t card = number / kNodesTogether;
  for (std::size_t i = kNodesTogether; i < nodes.size(); ++i)
    if (i / kNodesTogether != card && IsThere(nodes, i)) return Plain(kCommandFail);
  bool& began = sessions_[number].address_began;
  Reply reply = Plain(function);
  if (function == kAddressBegin) {
    if (card == 0) return Plain(kCommandFail);
    began = true;
    return reply;
  }
  if (!std::exchange(began, false)) return Plain(kCommandFail);
  nodes[number].addressed = true;
  reply.changed = true;
  return reply;
}

Reply NodeBus::Forward(Nodes& nodes, bool flash_mode, Request request) {
  const std::uint8_t function = request[kFunctionAt];
  const std::size_t number = request[kNodeAt];
  if (!IsThere(nodes, number)) return Plain(kNodeFail);
  if (function == kAddressBegin || function == kAddressEnd) return Address(nodes, number, function);
  Node& node = nodes[number];
  if (!node.addressed) return Plain(kNodeFail);
  if (function == kErase || function == kRecord || function == kFinish)
    return flash_mode ? Flash(node, sessions_[number], request) : Plain(kCommandFail);
  return flash_mode ? Refuse() : PortSettings(node.memory, request);
}

void NodeBus::Miss(Request request) {
  const std::size_t number = request[kNodeAt];
  if (request[kCommandAt] == kNodeCommand && request[kFunctionAt] == kRecord &&
      number < sessions_.size())
    sessions_[number].lacks_record = true;
}

std::optional<Reply> NodeBus::Handle(Nodes& nodes, bool flash_mode, Request request) {
  if (request[kCommandAt] == kNodeStatus) {
    MoveCards();
    return Status(nodes);
  }
  if (request[kCommandAt] == kNodeCommand) return Forward(nodes, flash_mode, request);
  return std::nullopt;
}

}  // namespace quillon::sim
