// SPDX-License-Identifier: MIT
#pragma once

#include <array>
#include <chrono>
#include <cstdint>
#include <span>

namespace quillon::sim {

// What a board is sent: the report number, then 64 bytes (see kvusb.h).
using Request = std::span<const std::uint8_t, 65>;

// What a board answers: the echo or a status, then 63 bytes.
using Answer = std::array<std::uint8_t, 64>;

// Byte 0 of the answer to a request that the board does not know in its family or mode, or whose
// arguments it does not take. No command has this code.
inline constexpr std::uint8_t kRefused = 0xEE;

// Every byte of an answer that carries nothing. Not 0, so that a reader of too many bytes shows.
inline constexpr std::uint8_t kFiller = 0x5A;

// Statuses in byte 0 of answers to firmware commands.
enum Status : std::uint8_t {
  kCommandFail = 2,
  kFlashFail = 4,
  kConfigFail = 5,
  kEepromFail = 6,
  kNodeFail = 10,
  kCrcFail = 11,
};

// Places in a request.
inline constexpr std::size_t kLengthAt = 1, kStartAt = 2, kEndAt = 3, kCommandAt = 4;
inline constexpr std::size_t kArgumentAt = 5, kPayloadAt = 6;

// What a request led to: the answer, and what the bus has to know beside it.
struct Reply {
  Answer answer{};
  bool changed = false;               // something that outlives the power was changed
  bool restart = false;               // the board restarts once its answer is out
  std::chrono::milliseconds busy{0};  // the answer takes this much longer than usual
};

// An answer with byte 0 as given and no data.
inline Reply Plain(std::uint8_t first) {
  Reply reply;
  reply.answer.fill(kFiller);
  reply.answer[0] = first;
  return reply;
}

inline Reply Refuse() { return Plain(kRefused); }

}  // namespace quillon::sim
