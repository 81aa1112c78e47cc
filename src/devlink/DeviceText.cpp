// SPDX-License-Identifier: MIT
#include "devlink/DeviceText.h"

#include <utf8.h>

#include <algorithm>
#include <cstdint>
#include <iterator>
#include <string_view>

namespace quillon {
namespace {

constexpr std::uint32_t kReplacement = 0xFFFD;

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
  const std::string_view raw = UpToZero(field);
  // There is no zero in the text, so one can stand for what is no UTF-8; it is unfit as well.
  std::string text;
  utf8::replace_invalid(raw.begin(), raw.end(), std::back_inserter(text), 0);
  std::string out;
  bool replaced = false;
  for (auto at = text.cbegin(); at != text.cend();) {
    const std::uint32_t code = utf8::next(at, text.cend());
    const bool fit = !Unfit(code);
    if (fit || !replaced) utf8::append(static_cast<char32_t>(fit ? code : kReplacement), out);
    replaced = !fit;
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
