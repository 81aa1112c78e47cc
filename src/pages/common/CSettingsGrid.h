// SPDX-License-Identifier: MIT
#pragma once

#include <functional>
#include <map>
#include <optional>
#include <string_view>
#include <vector>

#include "settings/Sheet.h"
#include "widgets/CGridCtrl.h"

namespace quillon {

// Which setting stands in a column, and what its cells look like. A cell whose setting offers
// nothing to choose is plain in a column of combos.
struct GridColumn {
  std::string_view setting;
  CellKind kind = CellKind::kPlain;
  // The largest number that can be typed, where a page refuses larger ones than the setting's own
  // with a message.
  std::uint32_t largest_entry = 0;
};

// A table and the row of its first line.
struct GridTable {
  std::string_view table;
  int first_row = 1;
};

// The colours of the rows: pairs of rows change between two, and the clicked row and the titles
// have their own where there are any.
struct GridGround {
  QRgb odd_pairs, even_pairs;
  std::optional<QRgb> clicked{};
  std::optional<QRgb> column_titles{}, row_titles{};
};
inline constexpr QRgb kClickedRow = 0xFFBFD4E3;    // RGB(191,212,227)
inline constexpr QRgb kLightRow = 0xFFF0F0F0;      // RGB(240,240,240)
inline constexpr QRgb kDarkRow = 0xFFDCDCDC;       // RGB(220,220,220)
inline constexpr QRgb kColumnTitles = 0xFFDCD2F5;  // RGB(220,210,245)
inline constexpr QRgb kRowTitles = 0xFFE6E6FF;     // RGB(230,230,255)
inline constexpr GridGround kPlainGround{kLightRow, kLightRow};
inline constexpr GridGround kChannelGround{kLightRow, kLightRow, kClickedRow};
inline constexpr GridGround kPairGround{kDarkRow, kLightRow, kClickedRow};
inline constexpr GridGround kPortGround{kDarkRow, kDarkRow, kClickedRow, kColumnTitles, kRowTitles};
inline constexpr GridGround kTitledGround{kLightRow, kLightRow, {}, kColumnTitles, kRowTitles};

struct GridLayout {
  std::vector<GridColumn> columns;
  std::vector<GridTable> tables;
  GridGround ground = kChannelGround;
};

// A grid that shows tables of a sheet. Titles, lists, tooltips, texts, codes and marks come from
// the sheet. Columns and tables that the sheet does not have are left out.
class CSettingsGrid : public CGridCtrl {
  Q_OBJECT

 public:
  // Takes the code that the user has chosen for a cell to the sheet; false refuses it.
  using EditHandler = std::function<bool(Cell cell, std::uint32_t code)>;

  CSettingsGrid(const Sheet& sheet, const GridLayout& layout, EditHandler edit);

  // Shows the sheet.
  void Show();
  // Paints the rows, none of them as clicked.
  void ClearClicked() { PaintGround(0); }

  // The cell of the sheet; nothing in a place that has none.
  std::optional<Cell> CellAt(int row, int column) const;
  bool Shows(Cell cell) const;
  // The column of a setting.
  int ColumnOf(std::string_view setting) const;

 private:
  // Cells with the same choices share the texts of their list.
  using Lists = std::map<const Choice*, QStringList>;

  void Place(const GridLayout& layout);
  void BuildCells();
  void BuildCell(int row, int column, Cell cell, Lists& lists);
  void ShowTitles();
  void ShowCell(int row, int column, Cell cell, bool anew);
  void PaintGround(int clicked_row);
  bool TakeEntry(int row, int column);
  QString ToolTip(int row, int column) const;

  const Sheet& sheet_;
  EditHandler edit_;
  GridGround ground_;
  std::vector<GridColumn> columns_;                      // from column 1 on
  std::vector<std::vector<std::optional<Cell>>> cells_;  // by row and column, both from 1
};

}  // namespace quillon
