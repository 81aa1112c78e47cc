// SPDX-License-Identifier: MIT
#include "boards/Board.h"

#include <algorithm>
#include <utility>

namespace quillon::sim {
namespace {

constexpr std::uint8_t kIdentity = 6, kSetSerial = 7, kRestart = 9, kSwitchMode = 0xFF;
constexpr std::uint8_t kFlashRecord = 0, kFlashFinish = 1, kFlashErase = 8;

}  // namespace

BoardState FactoryState(const BoardSpec& spec) {
  BoardState state;
  state.flash_mode = spec.flash_mode;
  state.serial = spec.serial;
  state.queried = spec.queried;
  if (spec.firmware != 0) state.flash = FlashImage::Of(spec.firmware);
  state.blocks = FactoryBlocks(FamilyOf(spec.product));
  for (const auto& [name, bytes] : spec.blocks) state.blocks[name] = bytes;
  for (std::size_t i = 0; i < spec.nodes.size(); ++i) {
    if (!spec.nodes[i]) continue;
    Node& node = state.nodes[i];
    node.active = true;
    node.addressed = spec.nodes[i]->addressed;
    node.loader_version = spec.nodes[i]->loader_version;
    node.flash_version = spec.nodes[i]->flash_version;
    node.memory = spec.nodes[i]->memory;
  }
  return state;
}

Board::Board(BoardSpec spec)
    : spec_(std::move(spec)),
      family_(FamilyOf(spec_.product)),
      state_(FactoryState(spec_)),
      loader_(spec_.flash_bytes, spec_.erase),
      node_bus_(spec_.eeprom, spec_.cards, spec_.flash_bytes, spec_.erase) {}

std::span<std::uint8_t> Board::Block(std::string_view name) {
  const auto found = state_.blocks.find(std::string(name));
  return found == state_.blocks.end() ? std::span<std::uint8_t>() : std::span(found->second);
}

std::uint32_t Board::Type() const { return state_.flash_mode ? 1 : FirmwareType(family_); }

std::uint16_t Board::VersionWord() const {
  return state_.flash_mode ? spec_.loader : state_.flash.Version();
}

Reply Board::Identity() const {
  std::uint16_t version = state_.flash.valid ? state_.flash.Version() : std::uint16_t{0};
  if (!state_.flash_mode && state_.queried) version = *state_.queried;
  Reply reply = Plain(kIdentity);
  reply.answer[1] = static_cast<std::uint8_t>(version >> 8);
  reply.answer[2] = static_cast<std::uint8_t>(version & 0xFF);
  reply.answer[3] = state_.flash.valid ? 1 : 0;
  return reply;
}

Reply Board::SetSerial(Request request) {
  const auto digits = request.subspan(kPayloadAt, 3);
  if (!std::ranges::all_of(digits, [](std::uint8_t c) { return c >= '0' && c <= '9'; }))
    return Refuse();
  state_.next_serial = std::string(digits.begin(), digits.end());
  Reply reply = Plain(kSetSerial);
  reply.changed = true;
  return reply;
}

Reply Board::HandleFlashMode(Request request) {
  if (request[kCommandAt] == kFlashErase) state_.queried.reset();
  if (auto reply = loader_.Handle(state_.flash, request)) return *reply;
  return Plain(kCommandFail);
}

Reply Board::HandleDeviceMode(Request request) {
  const std::uint8_t command = request[kCommandAt];
  if (command == kFlashRecord || command == kFlashFinish || command == kFlashErase)
    return Plain(kCommandFail);
  if (auto reply = AnswerSettings(family_, state_.blocks, request)) return *reply;
  if (family_ == Family::kJoystick || family_ == Family::kSmallJoystick)
    if (auto reply = calibration_.Handle(state_.calibration, request)) return *reply;
  return Refuse();
}

Reply Board::Handle(Request request) {
  const std::uint8_t command = request[kCommandAt];
  if (command == kIdentity && Type() != 2) return Identity();
  if (command == kSetSerial) return SetSerial(request);
  if (command == kRestart || command == kSwitchMode) {
    switch_mode_ = command == kSwitchMode;
    Reply reply = Plain(command);
    reply.restart = true;
    return reply;
  }
  if (family_ == Family::kNodes)
    if (auto reply = node_bus_.Handle(state_.nodes, state_.flash_mode, request)) return *reply;
  return state_.flash_mode ? HandleFlashMode(request) : HandleDeviceMode(request);
}

Reply Board::Fail(std::uint8_t status, Request request) {
  node_bus_.Miss(request);
  return Plain(status);
}

void Board::Restart() {
  if (std::exchange(switch_mode_, false)) state_.flash_mode = !state_.flash_mode;
  if (!state_.flash.valid) state_.flash_mode = true;
  if (state_.next_serial) state_.serial = *std::exchange(state_.next_serial, std::nullopt);
  loader_.Restart();
  node_bus_.Restart();
  calibration_.Restart();
}

void Board::LosePower() {
  switch_mode_ = false;
  Restart();
}

}  // namespace quillon::sim
