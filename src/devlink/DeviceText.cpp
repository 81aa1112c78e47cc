// SPDX-License-Identifier: MIT
#include "devlink/DeviceText.h"

#include <algorithm>
#include <cstdint>
#include <string_view>

namespace quillon {
namespace {

constexpr std::string_view kReplacement = "\xEF\xBF\xBD";  // U+FFFD

// Length in bytes of the valid UTF-8 character at the front (RFC 3629), 0 where there is none.
std::size_t CharacterLength(std::string_view text, std::uint32_t& code) {
  const auto byte = [&](std::size_t i) { return static_cast<unsigned char>(text[i]); };
  const unsigned lead = byte(0);
  if (lead < 0x80) {
    code = lead;
    return 1;
  }
  const std::size_t length = lead >= 0xF0 ? 4 : lead >= 0xE0 ? 3 : 2;
  if (lead < 0xC2 || lead > 0xF4 || text.size() < length) return 0;
  code = lead & (0x7FU >> length);
  for (std::size_t i = 1; i < length; ++i) {
    if ((byte(i) & 0xC0U) != 0x80U) return 0;
    code = code << 6U | (byte(i) & 0x3FU);
  }
  constexpr std::uint32_t kLowest[]{0, 0, 0x80, 0x800, 0x10000};
  const bool surrogate = code >= 0xD800 && code <= 0xDFFF;
  return code < kLowest[length] || surrogate || code > 0x10FFFF ? 0 : length;
}

// Characters that would break a line, act on the text around them or show as nothing.
bool Unfit(std::uint32_t code) {
  return code < 0x20 || (code >= 0x7F && code < 0xA0) || code == 0xAD || code == 0x061C ||
         (code >= 0x200B && code <= 0x200F) || (code >= 0x2028 && code <= 0x202E) ||
         (code >= 0x2060 && code <= 0x206F) || code == 0xFEFF || code == 0xFFFE || code == 0xFFFF ||
         (code >= 0xFFF9 && code <= 0xFFFB);
}

std::string_view UpToZero(std::span<const char> field) {
  const auto end = std::find(field.begin(), field.end(), '\0');
  return {field.data(), static_cast<std::size_t>(end - field.begin())};
}

}  // namespace

std::string ShownText(std::span<const char> field) {
  std::string out;
  bool replaced = false;
  for (std::string_view rest = UpToZero(field); !rest.empty();) {
    std::uint32_t code = 0;
    const std::size_t length = CharacterLength(rest, code);
    const bool fit = length > 0 && !Unfit(code);
    if (fit) out += rest.substr(0, length);
    if (!fit && !replaced) out += kReplacement;
    replaced = !fit;
    rest.remove_prefix(length > 0 ? length : 1);
  }
  return out;
}

std::string TextOrNothing(std::span<const char> field) {
  const std::string_view raw = UpToZero(field);
  if (raw.size() == field.size()) return {};
  std::string shown = ShownText(field);
  return shown == raw ? shown : std::string();
}

std::string BoardLabel(const DeviceRecord& record) {
  return ShownText(record.product_text) + " : " + ShownText(record.serial_number);
}

}  // namespace quillon
