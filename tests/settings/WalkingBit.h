// SPDX-License-Identifier: MIT
#pragma once

#include <array>
#include <string>
#include <utility>
#include <vector>

#include "settings/Field.h"

namespace quillon::testing {

using NamedFields = std::vector<std::pair<const char*, Field>>;

// What a block shows of a single bit of its wire bytes, counted from the lowest bit of byte 0:
// "<record>.<field>=<value>" for every field that is not zero.
template <typename Block>
std::string ShownOfBit(std::size_t bit, const NamedFields& fields) {
  std::array<std::uint8_t, Block::kSize> wire{};
  wire[bit / 8] = static_cast<std::uint8_t>(1U << bit % 8);
  Block block;
  block.Read(wire);
  std::string shown;
  for (std::size_t record = 0; record < Block::kRecords; ++record) {
    for (const auto& [name, field] : fields) {
      const std::uint32_t value = block.Get(record, field);
      if (value == 0) continue;
      shown += std::to_string(record) + "." + name + "=" + std::to_string(value) + " ";
    }
  }
  return shown;
}

// The wire bytes of a blank block after all bits of one field of one record have been set.
template <typename Block>
std::array<std::uint8_t, Block::kSize> WireOf(std::size_t record, Field field) {
  Block block;
  block.Set(record, field, field.Largest());
  std::array<std::uint8_t, Block::kSize> wire{};
  block.Write(wire);
  return wire;
}

}  // namespace quillon::testing
