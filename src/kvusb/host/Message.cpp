// SPDX-License-Identifier: MIT
#include "kvusb/host/Message.h"

namespace quillon::host {
namespace {

template <typename Whole>
std::span<std::uint8_t> BytesOf(Whole& whole) {
  return {reinterpret_cast<std::uint8_t*>(&whole), sizeof whole};
}

template <typename Whole>
std::span<const std::uint8_t> BytesOf(const Whole& whole) {
  return {reinterpret_cast<const std::uint8_t*>(&whole), sizeof whole};
}

bool WriteAll(Pipe& pipe, std::span<const std::uint8_t> bytes) {
  while (!bytes.empty()) {
    const std::size_t written = pipe.Write(bytes);
    if (written == 0) return false;
    bytes = bytes.subspan(written);
  }
  return true;
}

}  // namespace

// Only one message is ever under way, so a read may ask for more than that: most need one.
bool Receive(Pipe& pipe, Message& message) {
  const auto room = BytesOf(message);
  std::size_t have = 0;
  std::size_t whole = sizeof(Head);
  while (have < whole) {
    const std::size_t read = pipe.Read(room.subspan(have));
    if (read == 0) return false;
    have += read;
    if (have < sizeof(Head)) continue;
    if (!message.IsSound()) return false;
    whole = sizeof(Head) + message.head.size;
  }
  return have == whole;
}

bool Send(Pipe& pipe, const Message& message) {
  return WriteAll(pipe, BytesOf(message).first(sizeof(Head) + message.head.size));
}

bool ReceiveEvent(Pipe& pipe, EventMessage& event) {
  auto room = BytesOf(event);
  while (!room.empty()) {
    const std::size_t read = pipe.Read(room);
    if (read == 0) return false;
    room = room.subspan(read);
  }
  event.path.back() = '\0';
  return true;
}

bool SendEvent(Pipe& pipe, const EventMessage& event) { return WriteAll(pipe, BytesOf(event)); }

}  // namespace quillon::host
