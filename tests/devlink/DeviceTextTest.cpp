// SPDX-License-Identifier: MIT
#include <gmock/gmock.h>

#include <cstring>
#include <string_view>

#include "devlink/DeviceText.h"

namespace quillon {
namespace {

using namespace std::string_literals;
using namespace std::string_view_literals;

std::span<const char> Field(std::string_view bytes) { return {bytes.data(), bytes.size()}; }

// "?" stands for U+FFFD in the expectations.
std::string Expected(std::string_view text) {
  std::string out;
  for (const char c : text) out += c == '?' ? "\xEF\xBF\xBD"s : std::string(1, c);
  return out;
}

TEST(DeviceText, ShowsOnlyWhatIsFitToBeShown) {
  struct Case {
    const char* what;
    std::string_view field;
    std::string_view shown;
  };
  const Case cases[] = {
      {"plain", "Joystick\0garbage\n"sv, "Joystick"},
      {"empty", "\0garbage"sv, ""},
      {"no field", ""sv, ""},
      {"no zero byte", "ABC"sv, "ABC"},
      {"two, three and four bytes", "\xC3\xA9 \xE2\x82\xAC \xF0\x9F\x95\xB9\0"sv,
       "\xC3\xA9 \xE2\x82\xAC \xF0\x9F\x95\xB9"},
      {"the ends of the ranges", "\x20\x7E\xC2\xA0\xDF\xBF\xE0\xA0\x80\xED\x9F\xBF\xEE\x80\x80\0"sv,
       "\x20\x7E\xC2\xA0\xDF\xBF\xE0\xA0\x80\xED\x9F\xBF\xEE\x80\x80"},
      {"the last characters", "\xF0\x90\x80\x80\xF4\x8F\xBF\xBD\0"sv,
       "\xF0\x90\x80\x80\xF4\x8F\xBF\xBD"},
      {"one run of control characters", "a\x01\r\n\tb\x1B[0m\x7F\0"sv, "a?b?[0m?"},
      {"upper control characters", "a\xC2\x80\xC2\x9F\0"sv, "a?"},
      {"stray continuation", "a\x80\xBF\x62\0"sv, "a?b"},
      {"no lead bytes", "\xC0\x80 \xC1\xBF \xF5\x80\x80\x80 \xFF\xFE\0"sv, "? ? ? ?"},
      {"overlong", "\xE0\x80\xAF \xE0\x9F\xBF \xF0\x80\x80\xAF \xF0\x8F\xBF\xBF\0"sv, "? ? ? ?"},
      {"surrogates", "\xED\xA0\x80 \xED\xBF\xBF\0"sv, "? ?"},
      {"past the last character", "\xF4\x90\x80\x80\0"sv, "?"},
      {"cut by the zero byte", "a\xE2\x82\0\xAC"sv, "a?"},
      {"cut by the field's end", "a\xF0\x9F\x95"sv, "a?"},
      {"cut by a letter", "\xE2\x82z\xC3z\0"sv, "?z?z"},
      {"directions", "a\xE2\x80\xAE\x62\xE2\x81\xA6\x63\xE2\x80\x8F\x64\xD8\x9C\0"sv, "a?b?c?d?"},
      {"line ends", "a\xE2\x80\xA8\x62\xE2\x80\xA9\0"sv, "a?b?"},
      {"nothing to see", "a\xE2\x80\x8B\x62\xEF\xBB\xBF\x63\xC2\xAD\0"sv, "a?b?c?"},
      {"no characters", "\xEF\xBF\xBE\xEF\xBF\xBF \xEF\xB7\x90 \xF0\x9F\xBF\xBE\0"sv, "? ? ?"},
      {"fillers", "a\xE1\x85\x9F\x62\xE3\x85\xA4\x63\xE1\xA0\x8E\x64\xEF\xBE\xA0\0"sv, "a?b?c?d?"},
      {"tags", "a\xF3\xA0\x81\x81\xF3\xA0\x81\xBF\x62\xF3\xA0\x84\x80\0"sv, "a?b?"},
      {"variants, joiners", "a\xEF\xB8\x8F\x62\xCD\x8F\x63\xF0\x9D\x85\xB3\0"sv, "a?b?c?"},
      {"combined, from the right", "e\xCC\x81 \xD7\xA9\xD6\xB8 \xD8\xA7\0"sv,
       "e\xCC\x81 \xD7\xA9\xD6\xB8 \xD8\xA7"},
  };
  for (const Case& c : cases) {
    SCOPED_TRACE(c.what);
    EXPECT_EQ(ShownText(Field(c.field)), Expected(c.shown));
    // A place that may hold something else shows a text only when all of it is one.
    const bool whole = c.field.find('\0') != c.field.npos && c.shown.find('?') == c.shown.npos;
    EXPECT_EQ(TextOrNothing(Field(c.field)), whole ? std::string(c.shown) : "");
  }
}

TEST(DeviceText, ALabelStaysInsideItsFields) {
  DeviceRecord record;
  std::memset(&record, 'x', sizeof record);
  EXPECT_EQ(BoardLabel(record), std::string(260, 'x') + " : " + std::string(20, 'x'));
  record = {};
  EXPECT_EQ(BoardLabel(record), " : ");
  std::strcpy(record.product_text, "Joystick\x01");
  std::strcpy(record.serial_number, "0\xFF\x31");
  EXPECT_EQ(BoardLabel(record), Expected("Joystick? : 0?1"));
}

}  // namespace
}  // namespace quillon
