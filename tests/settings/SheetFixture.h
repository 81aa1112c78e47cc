// SPDX-License-Identifier: MIT
#pragma once

#include <gtest/gtest.h>

#include <algorithm>
#include <sstream>
#include <string>
#include <string_view>
#include <utility>
#include <vector>

#include "settings/Sheet.h"

namespace quillon::testing {

using Bytes = std::vector<std::uint8_t>;

// `size` bytes in hexadecimal; what is behind a * stands there again and again. Blanks are for the
// reader.
inline Bytes Hex(std::string digits, std::size_t size) {
  std::erase(digits, ' ');
  if (const auto star = digits.find('*'); star != digits.npos) {
    digits.erase(star, 1);
    const std::string record = digits.substr(star);
    while (digits.size() < size * 2) digits += record;
  }
  EXPECT_EQ(digits.size(), size * 2);
  Bytes bytes;
  for (std::size_t at = 0; at < digits.size(); at += 2)
    bytes.push_back(static_cast<std::uint8_t>(std::stoi(digits.substr(at, 2), nullptr, 16)));
  return bytes;
}

// The cell of "input 3 mode": a table, a line and a setting.
inline Cell At(const Sheet& sheet, const std::string& place) {
  std::istringstream words(place);
  std::string table, setting;
  int line = 0;
  words >> table >> line >> setting;
  return sheet.Find(table, line, setting).value();
}

// Those of "input 3 mode 4, input 4 mode 1", and the codes.
inline std::vector<std::pair<Cell, std::uint32_t>> CodesAt(const Sheet& sheet,
                                                           const std::string& list) {
  std::vector<std::pair<Cell, std::uint32_t>> codes;
  std::istringstream items(list);
  for (std::string item; std::getline(items >> std::ws, item, ',');) {
    const std::size_t blank = item.rfind(' ');
    codes.emplace_back(At(sheet, item), std::stoul(item.substr(blank)));
  }
  return codes;
}

// The settings of a line that are not 0, as "on=1 filter=5".
inline std::string CodesOf(const Sheet& sheet, std::string_view table, int line) {
  std::string codes;
  for (Cell cell = 0; cell < sheet.Cells(); ++cell) {
    if (sheet.TableOf(cell) != table || sheet.LineOf(cell) != line || sheet.Code(cell) == 0)
      continue;
    codes += (codes.empty() ? "" : " ") + std::string(sheet.SettingOf(cell).id) + '=' +
             std::to_string(sheet.Code(cell));
  }
  return codes;
}

// One letter of a drawn record: the setting, in the table's line `line` for the block's first
// record and `step` further down for each other one.
struct Drawn {
  char letter;
  std::string_view setting;
  std::string_view table{};
  int line = 1, step = 1;
};

// Checks that each setting of a block changes the bits that the drawing gives it, in every record,
// and no others. `record` has the bytes of a record one behind the other, bit 7 first: each bit by
// its setting's letter, '_' where it goes back as it came, '0' where it is always sent as 0.
inline void ExpectLayout(const Page& page, std::size_t exchange, std::string_view record,
                         const std::vector<Drawn>& settings, std::size_t first_byte = 0) {
  Page plain = page;
  plain.rules = nullptr;
  std::string bits(record);
  std::erase(bits, ' ');
  const std::size_t record_bytes = bits.size() / 8;
  const std::size_t size = plain.blocks[exchange].bytes;
  const std::size_t records = (size - first_byte) / record_bytes;
  for (const std::uint8_t held : {std::uint8_t{0}, std::uint8_t{0xFF}}) {
    Sheet sheet(plain);
    sheet.Retrieved(exchange, Bytes(size, held));
    for (std::size_t n = 0; n < records; ++n) {
      for (const Drawn& drawn : settings) {
        const int line = drawn.line + static_cast<int>(n) * drawn.step;
        const auto cell = sheet.Find(drawn.table, line, drawn.setting);
        ASSERT_TRUE(cell) << drawn.table << ' ' << line << ' ' << drawn.setting;
        sheet.Set(*cell, 0);
        const Bytes without = sheet.Outgoing(exchange);
        sheet.Set(*cell, 0xFFFFFFFF);
        const Bytes with = sheet.Outgoing(exchange);
        sheet.Set(*cell, 0);
        std::string changed;
        for (std::size_t byte = first_byte; byte < size; ++byte) {
          for (unsigned bit = 8; bit-- > 0;)
            changed += ((without[byte] ^ with[byte]) >> bit & 1) != 0 ? drawn.letter : '_';
        }
        std::string expected(changed.size(), '_');
        for (std::size_t i = 0; i < bits.size(); ++i) {
          if (bits[i] == drawn.letter) expected[n * bits.size() + i] = drawn.letter;
        }
        EXPECT_EQ(changed, expected) << drawn.table << ' ' << line << ' ' << drawn.setting;
      }
      for (std::size_t i = 0; i < bits.size(); ++i) {
        const int sent =
            sheet.Outgoing(exchange)[first_byte + n * record_bytes + i / 8] >> (7 - i % 8) & 1;
        EXPECT_EQ(sent, bits[i] == '_' && held != 0) << "record " << n << ", bit " << i;
      }
    }
  }
}

}  // namespace quillon::testing
