// SPDX-License-Identifier: MIT
#include "pages/common/GridRows.h"

#include <algorithm>

namespace quillon {
namespace {

std::optional<QString> TextOf(const GridColumn& column, std::uint32_t code) {
  for (const Choice& choice : column.choices) {
    if (choice.code == code) return choice.text;
  }
  if (column.kind == CellKind::kNumber) return QString::number(code);
  if (column.kind != CellKind::kCombo) return QString();
  if (column.describe.isEmpty()) return std::nullopt;
  return column.describe.arg(static_cast<int>(code) + column.describe_offset);
}

QStringList TextsOf(const std::vector<Choice>& choices) {
  QStringList texts;
  for (const Choice& choice : choices) texts.append(choice.text);
  return texts;
}

}  // namespace

std::vector<Choice> NumberedChoices(const QString& format, std::uint32_t first, std::uint32_t last,
                                    int offset) {
  std::vector<Choice> choices;
  for (std::uint32_t code = first;; first < last ? ++code : --code) {
    choices.push_back({format.arg(static_cast<int>(code) + offset), code});
    if (code == last) return choices;
  }
}

GridRows::GridRows(CGridCtrl& grid, int first_row, std::span<std::uint32_t> records,
                   std::vector<GridColumn> columns, int step)
    : grid_(grid),
      first_row_(first_row),
      step_(step),
      records_(records),
      columns_(std::move(columns)) {}

void GridRows::BuildCells() {
  for (const GridColumn& column : columns_) {
    grid_.SetText(0, column.column, column.title);
    grid_.SetColumnToolTip(column.column, column.tip);
    const QStringList texts = TextsOf(column.choices);
    const std::uint32_t largest =
        column.largest_entry != 0 ? column.largest_entry : column.field.Largest();
    for (int row = first_row_; HasRow(row); row += step_) {
      grid_.SetEnabledCell(row, column.column, true);
      if (column.kind == CellKind::kCombo) {
        grid_.SetCombo(row, column.column, texts);
      } else if (column.kind == CellKind::kNumber) {
        grid_.SetNumber(row, column.column, 0, static_cast<int>(largest));
      } else {
        grid_.SetKind(row, column.column, column.kind);
      }
    }
  }
}

void GridRows::Show() {
  for (const GridColumn& column : columns_) {
    for (std::size_t record = 0; record < records_.size(); ++record) {
      const std::uint32_t code =
          std::clamp(GetField(records_[record], column.field), column.minimum, column.maximum);
      SetField(records_[record], column.field, code);
      SetCode(RowOf(record), column.column, code < column.shown.size() ? column.shown[code] : code);
    }
  }
}

void GridRows::Store() {
  for (const GridColumn& column : columns_) {
    for (std::size_t record = 0; record < records_.size(); ++record) {
      SetField(records_[record], column.field, grid_.Value(RowOf(record), column.column));
    }
  }
}

void GridRows::ShowDefaults() {
  for (const GridColumn& column : columns_) {
    for (int row = first_row_; HasRow(row); row += step_) {
      SetCode(row, column.column, column.standard);
    }
  }
}

void GridRows::SetCode(int row, int column, std::uint32_t code) {
  const GridColumn* const description = ColumnAt(column);
  if (description == nullptr || !HasCell(row, column)) return;
  const auto text = TextOf(*description, code);
  if (!text) return;
  grid_.SetText(row, column, *text);
  grid_.SetValue(row, column, code);
}

bool GridRows::TakeEdit(int row, int column) {
  if (!HasCell(row, column)) return false;
  for (const Choice& choice : ColumnAt(column)->choices) {
    if (choice.text == grid_.Text(row, column)) grid_.SetValue(row, column, choice.code);
  }
  return true;
}

bool GridRows::HasCell(int row, int column) const {
  return ColumnAt(column) != nullptr && HasRow(row);
}

const GridColumn* GridRows::ColumnAt(int column) const {
  const auto found = std::find_if(columns_.begin(), columns_.end(),
                                  [&](const auto& one) { return one.column == column; });
  return found == columns_.end() ? nullptr : &*found;
}

bool GridRows::HasRow(int row) const {
  return row >= first_row_ && row < RowOf(records_.size()) && (row - first_row_) % step_ == 0;
}

}  // namespace quillon
