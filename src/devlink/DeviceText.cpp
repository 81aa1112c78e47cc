// SPDX-License-Identifier: MIT
#include "devlink/DeviceText.h"

#include <algorithm>
#include <cstdint>
#include <iterator>
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

struct Range {
  std::uint32_t first, last;
};

// Characters that would break a line, act on the text around them or show as nothing: controls,
// what Unicode lets a font ignore (Default_Ignorable_Code_Point), line ends and annotations.
constexpr Range kUnfit[]{
    {0x0000, 0x001F}, {0x007F, 0x009F}, {0x00AD, 0x00AD},   {0x034F, 0x034F},   {0x061C, 0x061C},
    {0x115F, 0x1160}, {0x17B4, 0x17B5}, {0x180B, 0x180F},   {0x200B, 0x200F},   {0x2028, 0x202E},
    {0x2060, 0x206F}, {0x3164, 0x3164}, {0xFDD0, 0xFDEF},   {0xFE00, 0xFE0F},   {0xFEFF, 0xFEFF},
    {0xFFA0, 0xFFA0}, {0xFFF0, 0xFFFB}, {0x1BCA0, 0x1BCA3}, {0x1D173, 0x1D17A}, {0xE0000, 0xE0FFF}};

bool Unfit(std::uint32_t code) {
  const bool no_character = (code & 0xFFFEU) == 0xFFFE;  // the last two of every plane
  return no_character || std::any_of(std::begin(kUnfit), std::end(kUnfit), [=](Range range) {
           return code >= range.first && code <= range.last;
         });
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
