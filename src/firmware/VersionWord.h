// SPDX-License-Identifier: MIT
#pragma once

#include <cstdint>
#include <string>

namespace quillon {

// A firmware version: a 16-bit word of four 4-bit digits, d3 to d0. 0x0282 is shown as 2.82, 0x1234
// as 12.34.
using VersionWord = std::uint16_t;

// The three numbers that are shown: d3 * 10 + d2, d1 and d0.
struct VersionNumbers {
  int major, minor, patch;
};

VersionNumbers FormatVersion(VersionWord version);

// The numbers as text, "%d.%d%d".
std::string VersionText(VersionWord version);

// A version without its lowest digit. Versions that differ only there are the same release.
constexpr VersionWord ReleaseOf(VersionWord version) {
  return static_cast<VersionWord>(version & 0xFFF0);
}

}  // namespace quillon
