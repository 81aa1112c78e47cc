// SPDX-License-Identifier: MIT
#include "pages/common/CSettingsGrid.h"

#include <algorithm>

#include "res/Icons.h"

namespace quillon {
namespace {

QString Shown(std::string_view text) {
  return QString::fromUtf8(text.data(), static_cast<qsizetype>(text.size()));
}

}  // namespace

CSettingsGrid::CSettingsGrid(const Sheet& sheet, const GridLayout& layout, EditHandler edit)
    : sheet_(sheet), edit_(std::move(edit)), ground_(layout.ground) {
  Place(layout);
  BuildCells();
  SetToggleImages(Icon("toggle-off"), Icon("toggle-on"));
  SetToolTips([this](int row, int column) { return ToolTip(row, column); });
  SetClickHandler([this](int row, int column) {
    if (ground_.clicked) PaintGround(row);
    const auto cell = CellAt(row, column);
    if (cell && IsToggle(Kind(row, column))) edit_(*cell, Value(row, column));
  });
  SetEndEditHandler([this](int row, int column) { return TakeEntry(row, column); });
  Show();
  FitColumns();
}

// Finds the cells of the sheet that have a place here.
void CSettingsGrid::Place(const GridLayout& layout) {
  std::vector<std::optional<Cell>> row_of_none(layout.columns.size() + 1);
  for (Cell cell = 0; cell < sheet_.Cells(); ++cell) {
    const auto table = std::ranges::find(layout.tables, sheet_.TableOf(cell), &GridTable::table);
    const auto column =
        std::ranges::find(layout.columns, sheet_.SettingOf(cell).id, &GridColumn::setting);
    if (table == layout.tables.end() || column == layout.columns.end()) continue;
    const auto row = static_cast<std::size_t>(table->first_row + sheet_.LineOf(cell) - 1);
    cells_.resize(std::max(cells_.size(), row + 1), row_of_none);
    cells_[row][static_cast<std::size_t>(column - layout.columns.begin()) + 1] = cell;
  }
  for (std::size_t column = layout.columns.size(); column > 0; --column) {
    const bool used =
        std::ranges::any_of(cells_, [&](const auto& row) { return row[column].has_value(); });
    if (used) {
      columns_.insert(columns_.begin(), layout.columns[column - 1]);
    } else {
      for (auto& row : cells_) row.erase(row.begin() + static_cast<std::ptrdiff_t>(column));
    }
  }
}

void CSettingsGrid::BuildCells() {
  Resize(static_cast<int>(cells_.size()), static_cast<int>(columns_.size()) + 1);
  Lists lists;
  for (int row = 1; row < Rows(); ++row) {
    for (int column = 1; column < Columns(); ++column) {
      const auto cell = CellAt(row, column);
      SetEnabledCell(row, column, cell.has_value());
      if (cell) BuildCell(row, column, *cell, lists);
    }
  }
  for (int column = 0; column < Columns(); ++column)
    SetBackground(0, column, ground_.column_titles);
  for (int row = 1; row < Rows(); ++row) SetBackground(row, 0, ground_.row_titles);
  PaintGround(0);
}

void CSettingsGrid::BuildCell(int row, int column, Cell cell, Lists& lists) {
  const Setting& setting = sheet_.SettingOf(cell);
  const GridColumn& look = columns_[static_cast<std::size_t>(column) - 1];
  if (look.kind == CellKind::kNumber) {
    SetNumber(row, column, 0, static_cast<int>(std::max(setting.most, look.largest_entry)));
  } else if (look.kind != CellKind::kCombo) {
    SetKind(row, column, look.kind);
  } else {
    const auto [list, added] = lists.try_emplace(setting.choices.data());
    if (added) {
      for (const Offer& offer : OffersOf(setting)) list->second << Shown(offer.text);
    }
    if (!list->second.isEmpty()) SetCombo(row, column, list->second);
  }
}

void CSettingsGrid::Show() {
  ShowTitles();
  for (int row = 1; row < Rows(); ++row) {
    for (int column = 1; column < Columns(); ++column) {
      if (const auto cell = CellAt(row, column)) ShowCell(row, column, *cell, false);
    }
  }
  Redraw();
}

// Each is that of the first cell in the row or column.
void CSettingsGrid::ShowTitles() {
  for (int column = 1; column < Columns(); ++column) {
    int row = 1;
    while (row + 1 < Rows() && !CellAt(row, column)) ++row;
    if (const auto cell = CellAt(row, column)) SetText(0, column, Shown(sheet_.TitleOf(*cell)));
  }
  for (int row = 1; row < Rows(); ++row) {
    int column = 1;
    while (column + 1 < Columns() && !CellAt(row, column)) ++column;
    if (const auto cell = CellAt(row, column)) SetText(row, 0, Shown(sheet_.RowNameOf(*cell)));
  }
}

// A cell that shows its code already keeps its text, unless `anew`.
void CSettingsGrid::ShowCell(int row, int column, Cell cell, bool anew) {
  const std::uint32_t code = sheet_.Code(cell);
  const bool worded = !IsToggle(Kind(row, column));
  if (worded && (anew || Value(row, column) != code || Text(row, column).isEmpty()))
    SetText(row, column, Shown(sheet_.TextOf(cell)));
  SetValue(row, column, code);
  const Mark mark = sheet_.MarkOf(cell);
  SetMarked(row, column, mark != Mark::kNone, mark == Mark::kEdited);
}

bool CSettingsGrid::TakeEntry(int row, int column) {
  const auto cell = CellAt(row, column);
  if (!cell) return false;
  std::optional<std::uint32_t> code;
  if (Kind(row, column) == CellKind::kNumber) {
    code = Value(row, column);
  } else {
    const std::string chosen = Text(row, column).toStdString();
    for (const Offer& offer : OffersOf(sheet_.SettingOf(*cell))) {
      if (offer.text == chosen) code = offer.code;
    }
  }
  if (!code || !edit_(*cell, *code)) return false;
  ShowCell(row, column, *cell, true);
  return true;
}

void CSettingsGrid::PaintGround(int clicked_row) {
  for (int row = 1; row < Rows(); ++row) {
    const QRgb band = (row - 1) / 2 % 2 == 0 ? ground_.odd_pairs : ground_.even_pairs;
    const QRgb colour = row == clicked_row ? ground_.clicked.value_or(band) : band;
    for (int column = 1; column < Columns(); ++column) SetBackground(row, column, colour);
  }
}

// A column's title has what its cells say, where all say the same, and else what they have in
// common.
QString CSettingsGrid::ToolTip(int row, int column) const {
  if (row > 0) {
    if (!IsEnabledCell(row, column)) return tr("This row does not have this setting.");
    const auto cell = CellAt(row, column);
    if (!cell) return ToolTip(0, column);
    const std::string note = sheet_.NoteOf(*cell);
    return Shown((note.empty() ? note : note + '\n') + sheet_.DescriptionOf(*cell));
  }
  std::optional<Cell> first;
  for (int other = 1; other < Rows(); ++other) {
    const auto cell = CellAt(other, column);
    if (!cell) continue;
    if (!first) first = cell;
    if (sheet_.DescriptionOf(*cell) != sheet_.DescriptionOf(*first))
      return Shown(sheet_.SettingOf(*first).purpose);
  }
  return first ? Shown(sheet_.DescriptionOf(*first)) : QString();
}

std::optional<Cell> CSettingsGrid::CellAt(int row, int column) const {
  if (row < 1 || column < 1 || row >= Rows() || column >= Columns()) return std::nullopt;
  return cells_[static_cast<std::size_t>(row)][static_cast<std::size_t>(column)];
}

bool CSettingsGrid::Shows(Cell cell) const {
  return std::ranges::any_of(cells_, [cell](const auto& row) {
    return std::ranges::find(row, std::optional(cell)) != row.end();
  });
}

int CSettingsGrid::ColumnOf(std::string_view setting) const {
  const auto found = std::ranges::find(columns_, setting, &GridColumn::setting);
  return static_cast<int>(found - columns_.begin()) + 1;
}

}  // namespace quillon
