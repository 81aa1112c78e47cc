// SPDX-License-Identifier: MIT
#include "kvusb/host/PeFile.h"

#include <cstdint>

namespace quillon::host {
namespace {

constexpr std::string_view kFirstMark = "MZ";
constexpr std::string_view kSecondMark{"PE\0\0", 4};
// Where the place of the second header stands, with four bytes, and before it the first header.
constexpr std::size_t kPlaceOfSecond = 60;

// Little-endian; `text` holds the bytes.
std::uint32_t Number(std::string_view text, std::size_t at, std::size_t bytes) {
  std::uint32_t out = 0;
  for (std::size_t i = bytes; i > 0; --i)
    out = out << 8U | static_cast<unsigned char>(text[at + i - 1]);
  return out;
}

}  // namespace

PeMachine PeMachineOf(std::string_view front) {
  if (!front.starts_with(kFirstMark) || front.size() < kPlaceOfSecond + 4) return PeMachine::kNone;
  const std::size_t second = Number(front, kPlaceOfSecond, 4);
  if (second > front.size()) return PeMachine::kNone;
  const std::string_view header = front.substr(second);
  if (!header.starts_with(kSecondMark) || header.size() < kSecondMark.size() + 2)
    return PeMachine::kNone;
  switch (Number(header, kSecondMark.size(), 2)) {
    case 0x014C:
      return PeMachine::kX86;
    case 0x8664:
      return PeMachine::kX64;
    default:
      return PeMachine::kOther;
  }
}

}  // namespace quillon::host
