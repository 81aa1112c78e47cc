// SPDX-License-Identifier: MIT
#pragma once

#include <array>
#include <cstdint>
#include <vector>

namespace quillon::usbip {

// The host's side of a conversation, written out for tests.
using Wire = std::vector<std::uint8_t>;
using SetupBytes = std::array<std::uint8_t, 8>;

inline void PutWord(Wire& wire, std::uint32_t word) {
  for (const unsigned shift : {24U, 16U, 8U, 0U})
    wire.push_back(static_cast<std::uint8_t>(word >> shift));
}

inline Wire Words(std::initializer_list<std::uint32_t> words) {
  Wire wire;
  for (const std::uint32_t word : words) PutWord(wire, word);
  return wire;
}

inline Wire Joined(Wire front, const Wire& back) {
  front.insert(front.end(), back.begin(), back.end());
  return front;
}

// A transfer of `length` bytes; `data` follows it when it goes out.
inline Wire SubmitBytes(std::uint32_t number, bool in, std::uint32_t endpoint, std::uint32_t length,
                        const SetupBytes& setup = {}, const Wire& data = {}) {
  Wire wire = Words({1, number, 0x10002, in ? 1U : 0U, endpoint, 0, length, 0, 0, 0});
  wire.insert(wire.end(), setup.begin(), setup.end());
  return Joined(wire, data);
}

inline Wire UnlinkBytes(std::uint32_t number, std::uint32_t victim) {
  return Words({2, number, 0x10002, 0, 0, victim, 0, 0, 0, 0, 0, 0});
}

// What a board sends back: to a transfer, with the data of an IN transfer, and to an Unlink.
inline Wire AnswerBytes(std::uint32_t number, std::uint32_t status, std::uint32_t length,
                        const Wire& data = {}) {
  return Joined(Words({3, number, 0, 0, 0, status, length, 0, 0, 0, 0, 0}), data);
}

inline Wire UnlinkedBytes(std::uint32_t number, std::uint32_t status) {
  return Words({4, number, 0, 0, 0, status, 0, 0, 0, 0, 0, 0});
}

inline constexpr std::uint32_t kStalled = 0xFFFFFFE0, kTakenBack = 0xFFFFFF98;

}  // namespace quillon::usbip
