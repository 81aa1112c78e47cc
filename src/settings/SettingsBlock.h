// SPDX-License-Identifier: MIT
#pragma once

#include <array>
#include <span>

#include "settings/Field.h"

namespace quillon {

// A settings block as a board stores it: `Records` records of `Bytes` bytes each. Each record is
// kept as one 32-bit word. Setting a field changes its bits only, so whatever a page does not edit
// goes back exactly as it was retrieved.
template <std::size_t Records, std::size_t Bytes>
class SettingsBlock {
  static_assert(Records > 0 && Bytes > 0 && Bytes <= 4);

 public:
  static constexpr std::size_t kRecords = Records;
  static constexpr std::size_t kRecordBytes = Bytes;
  static constexpr std::size_t kSize = Records * Bytes;

  std::uint32_t Get(std::size_t record, Field field) const {
    return GetField(words_[record], field);
  }
  void Set(std::size_t record, Field field, std::uint32_t value) {
    SetField(words_[record], field, value);
  }

  // The records as words, for whatever works on any block.
  std::span<std::uint32_t> Words() { return words_; }

  // Read() takes the block from its wire bytes, Write() gives them back.
  void Read(std::span<const std::uint8_t, kSize> wire) {
    for (std::size_t record = 0; record < Records; ++record) {
      words_[record] = 0;
      for (std::size_t byte = 0; byte < Bytes; ++byte) {
        words_[record] |= static_cast<std::uint32_t>(wire[record * Bytes + byte]) << 8 * byte;
      }
    }
  }
  void Write(std::span<std::uint8_t, kSize> wire) const {
    for (std::size_t i = 0; i < kSize; ++i) {
      wire[i] = static_cast<std::uint8_t>(words_[i / Bytes] >> 8 * (i % Bytes));
    }
  }

 private:
  std::array<std::uint32_t, Records> words_{};
};

}  // namespace quillon
