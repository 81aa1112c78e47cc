// SPDX-License-Identifier: MIT
#pragma once

#include <cstdint>

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

}  // namespace quillon
