// SPDX-License-Identifier: MIT
#pragma once

#include <cstddef>
#include <cstdint>
#include <functional>
#include <map>
#include <optional>
#include <span>
#include <string>
#include <string_view>
#include <vector>

#include "settings/Setting.h"
#include "settings/Transfer.h"

namespace quillon {

class Sheet;

// One value of a sheet.
using Cell = std::size_t;

// What the values of a page do to each other. Each may be missing.
struct Rules {
  // After an exchange was read: what is shown of it where a field does not say so alone.
  void (*retrieved)(Sheet& sheet, std::size_t exchange) = nullptr;
  // After the user has chosen the cell's code.
  void (*edited)(Sheet& sheet, Cell cell) = nullptr;
  // The code that goes out for a cell, where that is not the one that is shown.
  std::uint32_t (*leaving)(const Sheet& sheet, Cell cell) = nullptr;
  // After the factory values were loaded; not for those that a sheet starts with.
  void (*defaulted)(Sheet& sheet) = nullptr;
};

// How a cell differs from what the board holds, as far as that is known.
enum class Mark {
  kNone,
  kEdited,     // the user, a rule or the defaults changed it
  kCorrected,  // shown as something else than the board holds, and stored so by the next update
  kHidden,     // the board holds what cannot be shown here
};

// The values of one page, without a screen: what a page shows, a command line prints and a file
// keeps. It starts with the factory values, and knows of no board until something is retrieved.
class Sheet {
 public:
  // One block for the board, or for one port.
  struct Exchange {
    const Block* block = nullptr;
    NodePort port{};
  };

  explicit Sheet(const Page& page);

  const Page& Of() const { return *page_; }
  std::size_t Cells() const { return cells_.size(); }

  // ---- what a cell is
  const Setting& SettingOf(Cell cell) const { return *cells_[cell].setting; }
  std::string_view TableOf(Cell cell) const { return cells_[cell].table->id; }
  // The cell's line among all tables of one id, from 1: the number in its row's name, unless a rule
  // numbers the rows.
  int LineOf(Cell cell) const { return cells_[cell].line; }
  // Empty for a row that has no name yet.
  std::string RowNameOf(Cell cell) const;
  // The setting's, unless a rule changed it.
  std::string_view TitleOf(Cell cell) const;
  // Nothing where there is no such cell.
  std::optional<Cell> Find(std::string_view table, int line, std::string_view setting) const;
  // Another setting of the same row.
  std::optional<Cell> Beside(Cell cell, std::string_view setting) const;

  // ---- what it holds
  std::uint32_t Code(Cell cell) const { return cells_[cell].code; }
  // What stands for the code.
  std::string TextOf(Cell cell) const;
  // What the setting does, its range and its factory value here.
  std::string DescriptionOf(Cell cell) const;
  Mark MarkOf(Cell cell) const;
  // What the board holds and what becomes of it, as sentences, for kCorrected and kHidden.
  std::string NoteOf(Cell cell) const;

  bool AnyEdited() const;
  // How many values of the board cannot be shown here.
  int Hidden() const;

  // ---- what changes it
  // The user's choice; the rules follow.
  void Edit(Cell cell, std::uint32_t code);
  // All settings that have factory values get them; the board is not told.
  void LoadFactory();
  // For a page about one port: from now on about this one. What was known of the one before is
  // forgotten.
  void SetPort(NodePort port);
  // Forgets everything that is known of a board; factory values again.
  void Forget();

  // ---- for rules
  // Sets a cell without further rules.
  void Set(Cell cell, std::uint32_t code);
  // Shows this instead of what the board holds; the next update stores it.
  void ShowInstead(Cell cell, std::uint32_t code);
  // From now on `offset` is added to the numbers in the names of the tables' rows.
  void NumberRows(std::string_view table, int offset) { row_offsets_[table] = offset; }
  // From now on the setting's column has this title; the text is not copied.
  void Retitle(std::string_view setting, std::string_view title) { titles_[setting] = title; }
  // What the cell showed before the exchange that is being read.
  std::uint32_t CodeBefore(Cell cell) const { return cells_[cell].before; }
  // The cells of an exchange follow each other: [first, last).
  std::pair<Cell, Cell> CellsOf(std::size_t exchange) const;

  // ---- for transfers
  std::span<const Exchange> Exchanges() const { return exchanges_; }
  // Takes what a board holds; `bytes` has the block's size.
  void Retrieved(std::size_t exchange, std::span<const std::uint8_t> bytes);
  // What an update sends. Bits that no cell names go back as they came, zeros before the first
  // retrieve.
  std::vector<std::uint8_t> Outgoing(std::size_t exchange) const;
  // To be called before an update: what the board only tells is no longer shown.
  void BeginUpdate();
  // The board holds the first `count` of these bytes now; the others are as they were.
  void Stored(std::size_t exchange, std::span<const std::uint8_t> bytes, std::size_t count);

 private:
  struct Value {
    const Table* table = nullptr;
    const Setting* setting = nullptr;
    std::size_t exchange = 0;
    std::size_t row = 0;  // of the table
    int line = 0;
    std::uint32_t code = 0;      // shown
    std::uint32_t held = 0;      // by the board
    std::uint32_t baseline = 0;  // the code that is no edit
    std::uint32_t before = 0;
    bool known = false;   // whether `held` and `baseline` mean anything
    bool hidden = false;  // `code` does not show what is held
    bool kept = false;    // what is hidden goes back to the board
  };

  void AddCells(std::size_t exchange, std::size_t port);
  void FillInFactory();
  void Take(Value& value, std::uint32_t held);
  std::uint32_t Leaving(Cell cell) const;

  const Page* page_;
  std::vector<Exchange> exchanges_;
  std::vector<std::vector<std::uint8_t>> bytes_;  // as the board holds them, by exchange
  std::vector<Value> cells_;
  std::map<std::string_view, int> row_offsets_;          // by table
  std::map<std::string_view, std::string_view> titles_;  // by setting
};

}  // namespace quillon
