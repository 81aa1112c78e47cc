// SPDX-License-Identifier: MIT
#pragma once

#include <algorithm>
#include <cstdint>
#include <cstring>
#include <string_view>

namespace quillon {

// Copies the text and a zero byte to a caller's `size` bytes. A text that is too long is cut, but
// never inside a UTF-8 character.
inline void CopyText(std::string_view text, char* to, std::uint32_t size) {
  if (to == nullptr || size == 0) return;
  std::size_t length = std::min<std::size_t>(text.size(), size - 1);
  const auto continues = [&](std::size_t at) {
    return at < text.size() && (static_cast<unsigned char>(text[at]) & 0xC0U) == 0x80;
  };
  while (length > 0 && continues(length)) --length;
  std::memcpy(to, text.data(), length);
  to[length] = '\0';
}

}  // namespace quillon
