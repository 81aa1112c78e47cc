// SPDX-License-Identifier: MIT
#pragma once

#include <cstdint>
#include <limits>
#include <optional>
#include <span>
#include <string>
#include <string_view>
#include <vector>

#include "devlink/Products.h"
#include "settings/Field.h"

// Everything that is known about a setting, once and without a screen: where it stands, what it may
// be, what it is in the factory. Pages and programs read it here.
//
//   family -> pages -> blocks -> tables -> settings
namespace quillon {

// A text and the code that it stands for, or a run of them: the codes from `first` to `last`,
// upwards or downwards, with %1 in the text for the code plus `offset`.
struct Choice {
  std::string_view text;
  std::uint32_t first = 0;
  std::uint32_t last = first;
  int offset = 0;
  // False: a board may hold it and it is shown, but nobody can choose it.
  bool offered = true;
};

// What becomes of a value that a board holds and the setting cannot be.
enum class Foreign {
  kClamped,  // brought inside least and most, in the block too
  kShown,    // shown as it is, and kept until it is changed
  kLost,     // not shown: what the page showed before stays, and is stored by the next update
  kKept,     // not shown, but kept until another value is chosen
  kFactory,  // not shown: the factory value is, and is stored by the next update
};

// One setting of a row.
struct Setting {
  std::string_view id;       // in files and on command lines; never changes
  std::string_view title;    // as a page shows it, blanks that set a column's width included
  std::string_view purpose;  // what it does to the board, without range and factory value
  Field field;               // in the row's record
  // Empty: a plain number, or a switch where the field has one bit.
  std::span<const Choice> choices{};
  std::uint32_t least = 0;
  std::uint32_t most = field.Largest();
  Foreign foreign = Foreign::kLost;
  // None: the page's defaults leave it alone. One: of every row. Else one a row.
  std::span<const std::uint32_t> factory{};
  // What is shown for each stored code where that is not the code itself; kUnshown: nothing, as
  // for a foreign value.
  std::span<const std::uint32_t> shown{};
  // The board tells it and is never told: it is sent as 0.
  bool state_only = false;
};

inline constexpr std::uint32_t kUnshown = 0xFFFFFFFF;

// What the rows are called: the names, else the pattern with %1 for the row's number.
struct RowNames {
  std::string_view pattern;
  int first = 1;
  int step = 1;
  std::span<const std::string_view> names{};
  // The names are those of the ports, A first; a port has one row.
  bool by_port = false;
  // Rows of larger numbers have no name until a rule numbers the table's rows.
  int last_named = std::numeric_limits<int>::max();
};

// Rows of the same settings at even distances in a block.
struct Table {
  std::string_view id;
  RowNames names;
  std::uint16_t first_bit = 0;  // of the first row, in the block
  std::uint16_t bits_a_row = 0;
  std::uint16_t rows = 1;
  std::span<const Setting> settings;
  std::span<const Field> zeros{};  // of a row; always sent as 0
};

// How a block travels.
enum class Way {
  kCommand,  // whole, with a command
  kRange,    // as bytes [start, end) of the board's table, in as many packets as it takes
  kNode,     // with a node function, for one of the two ports of a node
};

// Bytes that are read and written together. Bits that no table names go back as they came.
struct Block {
  std::string_view id;
  Way way = Way::kCommand;
  std::uint8_t read = 0, write = 0;  // commands, or node functions
  // Of a range. Of a node's block: where that of its first port starts, and that of its second.
  std::uint8_t start = 0, end = 0;
  std::uint8_t bytes = 0;
  std::span<const Table> tables;
  // Intended where false: whether the board took the block is not looked at. The exchanges behind
  // it follow, and the Error lamp stays dark.
  bool write_checked = true;
};

// What a page is about. Each block is exchanged once for each of these.
enum class About { kBoard, kPort, kAllPorts };

struct Rules;  // Sheet.h

struct Page {
  std::string_view id;
  std::string_view title;
  std::span<const Block> blocks;  // in the order in which they are exchanged
  const Rules* rules = nullptr;   // what its values do to each other, if anything
  About about = About::kBoard;
  // Intended: an update counts as done for "Load default settings" once it was answered, whatever
  // the answer. The Error lamp follows the answer all the same.
  bool answered_is_done = false;
  // Intended: an update darkens the Error lamp neither at its start nor when it succeeds.
  bool update_leaves_lamp = false;
};

// The settings pages of a family's board, in the order of its tabs; none for a family that has no
// pages or whose pages are still to come. Those of one port of a node stand in NodeSettings.h.
std::span<const Page> PagesOf(BoardFamily family);

// What stands for a code: its choice, offered or not, its number, or "on" and "off" for a switch.
// Nothing where the setting has choices and none of them is this one.
std::optional<std::string> TextOf(const Setting& setting, std::uint32_t code);

// One entry of a setting's list.
struct Offer {
  std::string text;
  std::uint32_t code;
};

// The choices that can be chosen, in the order in which they are listed.
std::vector<Offer> OffersOf(const Setting& setting);

// What can be chosen: "Normal, Toggle, Pulse", or "0 to 10" for a run or a number; nothing for a
// switch.
std::string RangeOf(const Setting& setting);

// What the setting does to the board, its range or choices, and its factory value in `row`, counted
// from 0, as sentences.
std::string DescriptionOf(const Setting& setting, std::size_t row);

// The factory value in a row; none where the page's defaults leave the setting alone.
std::optional<std::uint32_t> FactoryOf(const Setting& setting, std::size_t row);

// What a row is called; `offset` is added to its number.
std::string NameOf(const RowNames& names, std::size_t row, int offset = 0);

// The family's page of that name; null where it has none.
const Page* FindPage(BoardFamily family, std::string_view id);

// Whether the block's tables fit into it, name no bit twice, and every choice, limit and factory
// value fits its field. For static assertions.
constexpr bool IsSound(const Block& block);

// The record bits of a row that its settings and zeros take; 0 where two overlap or one is outside.
constexpr std::uint32_t BitsOfRow(const Table& table) {
  std::uint32_t used = 0;
  const auto take = [&](Field field) {
    const bool fits = field.width > 0 && field.Shift() + field.width <= table.bits_a_row &&
                      field.Shift() + field.width <= 32 && (used & field.Mask()) == 0;
    used |= field.Mask();
    return fits;
  };
  for (const Setting& setting : table.settings) {
    if (!take(setting.field)) return 0;
  }
  for (const Field field : table.zeros) {
    if (!take(field)) return 0;
  }
  return used;
}

constexpr bool IsSound(const Setting& setting, unsigned rows) {
  const std::uint32_t largest = setting.field.Largest();
  if (setting.least > setting.most || setting.most > largest) return false;
  for (const Choice& choice : setting.choices) {
    if (choice.first > largest || choice.last > largest) return false;
  }
  for (const std::uint32_t code : setting.factory) {
    if (code < setting.least || code > setting.most) return false;
  }
  return setting.factory.size() <= 1 || setting.factory.size() == rows;
}

constexpr bool IsSound(const Block& block) {
  // A bit for each of the block's: which are taken.
  std::uint8_t taken[256]{};
  for (const Table& table : block.tables) {
    const std::uint32_t used = BitsOfRow(table);
    if (used == 0) return false;
    for (const Setting& setting : table.settings) {
      if (!IsSound(setting, table.rows)) return false;
    }
    for (unsigned row = 0; row < table.rows; ++row) {
      for (unsigned bit = 0; bit < 32; ++bit) {
        if ((used >> bit & 1U) == 0) continue;
        const unsigned at = table.first_bit + row * table.bits_a_row + bit;
        if (at >= block.bytes * 8U || (taken[at / 8] >> at % 8 & 1U) != 0) return false;
        taken[at / 8] = static_cast<std::uint8_t>(taken[at / 8] | 1U << at % 8);
      }
    }
  }
  // An answer has room for 63 bytes, a request for 59, a node's for 56; a range goes in two
  // packets.
  switch (block.way) {
    case Way::kCommand:
      return block.bytes <= 59;
    case Way::kRange:
      return block.bytes <= 2 * 59 && block.end - block.start == block.bytes;
    case Way::kNode:
      return block.bytes <= 56;
  }
  return false;
}

}  // namespace quillon
