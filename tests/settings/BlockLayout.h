// SPDX-License-Identifier: MIT
#pragma once

#include <gtest/gtest.h>

#include <algorithm>
#include <array>
#include <string>
#include <string_view>
#include <vector>

#include "settings/SettingsBlock.h"

namespace quillon::testing {

using Bytes = std::vector<std::uint8_t>;

struct DrawnField {
  char letter;
  Field field;
};

template <typename Block>
Bytes WireOf(const Block& block) {
  Bytes wire(Block::kSize);
  block.Write(std::span<std::uint8_t, Block::kSize>(wire));
  return wire;
}

template <typename Block>
Block BlockOf(const Bytes& wire) {
  Block block;
  block.Read(std::span<const std::uint8_t, Block::kSize>(wire));
  return block;
}

// A record's fields by their letters, as "o1 f10".
template <typename Block>
std::string FieldsOf(const Block& block, std::size_t record,
                     const std::vector<DrawnField>& fields) {
  std::string shown;
  for (const auto& [letter, field] : fields)
    shown += (shown.empty() ? "" : " ") + (letter + std::to_string(block.Get(record, field)));
  return shown;
}

// Sets a field to more than it holds and to nothing: its own bits change and no other.
template <typename Block>
void ExpectChangesItsOwnBits(std::string bits, const DrawnField& drawn) {
  for (char& bit : bits) bit = bit == drawn.letter ? bit : '_';
  bits.resize(Block::kSize * 8, '_');
  for (const unsigned before : {0x00U, 0xFFU}) {
    auto block = BlockOf<Block>(Bytes(Block::kSize, static_cast<std::uint8_t>(before)));
    block.Set(0, drawn.field, before == 0 ? 0xFFFFFFFFU : 0U);
    std::string changed;
    for (const std::uint8_t byte : WireOf(block))
      for (unsigned bit = 8; bit-- > 0;)
        changed += ((byte ^ before) >> bit & 1) != 0 ? drawn.letter : '_';
    EXPECT_EQ(changed, bits);
  }
}

// Walks one bit through every record of a block. `drawing` has the bytes of a record one behind the
// other, bit 7 first, each bit by its field's letter or '_' where nobody edits: the bit must show
// in that field at its place, in no other, come from that field alone, and stay where it is kept.
template <typename Block>
void ExpectLayout(std::string_view drawing, const std::vector<DrawnField>& fields) {
  std::string bits(drawing);
  std::erase(bits, ' ');
  ASSERT_EQ(bits.size(), Block::kRecordBytes * 8);
  for (const DrawnField& drawn : fields) ExpectChangesItsOwnBits<Block>(bits, drawn);
  for (std::size_t at = 0; at < Block::kSize * 8; ++at) {
    const std::size_t record = at / 8 / Block::kRecordBytes;
    const std::size_t byte = at / 8 % Block::kRecordBytes;
    const std::size_t bit = at % 8;
    SCOPED_TRACE("record " + std::to_string(record) + ", byte " + std::to_string(byte) + ", bit " +
                 std::to_string(bit));
    Bytes wire(Block::kSize);
    wire[at / 8] = static_cast<std::uint8_t>(1U << bit);
    auto block = BlockOf<Block>(wire);
    EXPECT_EQ(WireOf(block), wire);

    const char letter = bits[byte * 8 + 7 - bit];
    // The lowest bit of a field is its letter's last place in the byte.
    const auto places = bits.substr(byte * 8, 8);
    const std::uint32_t own = 1U << (bit - (7 - places.find_last_of(letter)));
    for (const auto& [drawn, field] : fields) {
      EXPECT_EQ(block.Get(record, field), drawn == letter ? own : 0) << "field " << drawn;
      block.Set(record, field, 0);
    }
    if (letter != '_') wire[at / 8] = 0;
    EXPECT_EQ(WireOf(block), wire) << (letter == '_' ? "not kept" : "not cleared");
    for (const auto& [drawn, field] : fields) {
      if (drawn == letter) block.Set(record, field, own);
    }
    wire[at / 8] = static_cast<std::uint8_t>(1U << bit);
    EXPECT_EQ(WireOf(block), wire);
  }
}

}  // namespace quillon::testing
