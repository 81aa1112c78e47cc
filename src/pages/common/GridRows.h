// SPDX-License-Identifier: MIT
#pragma once

#include <QString>
#include <cstdint>
#include <span>

#include "settings/Field.h"
#include "widgets/CGridCtrl.h"

namespace quillon {

// One entry of a combo cell's list, and the code that it stands for.
struct Choice {
  QString text;
  std::uint32_t code;
};

// "Button 1" and the like: entries for the codes `first` to `last`, in that order, upwards or
// downwards. `format` holds %1, which becomes the code plus `offset`.
std::vector<Choice> NumberedChoices(const QString& format, std::uint32_t first, std::uint32_t last,
                                    int offset = 0);

// One column of a settings grid: what its cells look like and which field of a record they show.
struct GridColumn {
  int column = 0;
  QString title;
  QString tip;  // what the setting does to the board, its range and default
  CellKind kind = CellKind::kPlain;
  Field field{};
  std::vector<Choice> choices{};

  // The text for a code that no choice stands for, %1 being the code plus describe_offset. Without
  // such a text, a retrieved code that no choice stands for leaves the cell as it was.
  QString describe{};
  int describe_offset = 0;

  // A retrieved code outside this range is brought into it, in the record too.
  std::uint32_t minimum = 0;
  std::uint32_t maximum = 0xFFFFFFFF;
  // The code that is shown for each stored code, where that is not the same code. One that no
  // choice stands for leaves the cell as it was.
  std::span<const std::uint32_t> shown{};
  // The largest number that can be typed into a number cell; 0: the largest that the field holds. A
  // page that refuses too large a number with a message sets more.
  std::uint32_t largest_entry = 0;
  // The factory setting.
  std::uint32_t standard = 0;
};

// The rows of a grid that show the records of one block: record 0 in `first_row`, each further one
// `step` rows below. Makes the cells and moves fields to cells and back; the rules that a table
// cannot express stay with the page.
class GridRows {
 public:
  GridRows(CGridCtrl& grid, int first_row, std::span<std::uint32_t> records,
           std::vector<GridColumn> columns, int step = 1);

  // Lays out titles, tooltips and cells, and switches the cells on.
  void BuildCells();

  // Fills the cells from the records, clamping both.
  void Show();

  // Fills the records' fields from the cells. Nothing else in the records changes.
  void Store();
  // Fills the cells with the factory settings; the records stay.
  void ShowDefaults();

  // Sets a cell to a code, with its text, as a page's defaults and rules do.
  void SetCode(int row, int column, std::uint32_t code);

  // After an edit: gives the cell the code of its text. False for a cell outside these rows.
  bool TakeEdit(int row, int column);

  bool HasCell(int row, int column) const;

 private:
  const GridColumn* ColumnAt(int column) const;
  bool HasRow(int row) const;
  int RowOf(std::size_t record) const { return first_row_ + static_cast<int>(record) * step_; }

  CGridCtrl& grid_;
  int first_row_;
  int step_;
  std::span<std::uint32_t> records_;
  std::vector<GridColumn> columns_;
};

}  // namespace quillon
