// SPDX-License-Identifier: MIT
#pragma once

#include <cstddef>
#include <cstdint>
#include <initializer_list>

namespace quillon {

// One bit field of a settings record: `width` bits upwards from bit `bit` of byte `byte`. Records
// are little-endian, so a field may run on into the next byte.
struct Field {
  std::uint8_t byte, bit, width;

  constexpr std::uint32_t Shift() const { return byte * 8U + bit; }
  // The largest value that the field holds.
  constexpr std::uint32_t Largest() const { return width >= 32 ? 0xFFFFFFFFU : (1U << width) - 1U; }
  constexpr std::uint32_t Mask() const { return Largest() << Shift(); }
};

// The bits of a record that the fields take, or 0 where two of them overlap or one does not fit
// into `record_bytes`. For static assertions beside a field table.
constexpr std::uint32_t BitsOf(std::size_t record_bytes, std::initializer_list<Field> fields) {
  std::uint32_t used = 0;
  for (const Field& field : fields) {
    const bool fits = field.width > 0 && field.Shift() + field.width <= record_bytes * 8;
    if (!fits || (used & field.Mask()) != 0) return 0;
    used |= field.Mask();
  }
  return used;
}

// A field's value in a record kept as a 32-bit word, wire byte 0 lowest.
constexpr std::uint32_t GetField(std::uint32_t record, Field field) {
  return record >> field.Shift() & field.Largest();
}

// Sets the field and nothing else. A value that is too large loses its high bits.
constexpr void SetField(std::uint32_t& record, Field field, std::uint32_t value) {
  record = (record & ~field.Mask()) | (value << field.Shift() & field.Mask());
}

}  // namespace quillon
