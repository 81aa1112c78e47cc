// SPDX-License-Identifier: MIT
#pragma once

#include <QAbstractTableModel>
#include <QRect>
#include <functional>
#include <vector>

#include "widgets/GridCell.h"

namespace quillon {

// The cells of a grid. Rows and columns here count the titles: row 0 holds the column titles and
// column 0 the row titles, which the views' headers show, so data cell (r, c) is the model index
// (r - 1, c - 1). Changes are collected and told to the views by Redraw().
class GridModel : public QAbstractTableModel {
  Q_OBJECT

 public:
  using QAbstractTableModel::QAbstractTableModel;

  // Drops all cells and starts with empty ones; both counts include the titles.
  void Resize(int rows, int columns);
  int Rows() const { return rows_; }
  int Columns() const { return columns_; }
  bool Holds(int row, int column) const;

  const GridCell& Cell(int row, int column) const { return cells_[At(row, column)]; }
  // The cell to write to; counts as changed.
  GridCell& Change(int row, int column);
  // Asked when a tooltip is shown or read out; a column's title is row 0.
  void SetToolTips(std::function<QString(int row, int column)> tool_tips);

  // Tells the views what changed since the last call: one dataChanged around all data cells, one
  // headerDataChanged per direction for titles, nothing where nothing changed.
  void Redraw();

  // What a cell shows, in words: its text, or "on" and "off" for toggles.
  QString Words(int row, int column) const;

  QModelIndex IndexOf(int row, int column) const { return index(row - 1, column - 1); }
  static int RowOf(const QModelIndex& index) { return index.row() + 1; }
  static int ColumnOf(const QModelIndex& index) { return index.column() + 1; }

  int rowCount(const QModelIndex& parent = {}) const override;
  int columnCount(const QModelIndex& parent = {}) const override;
  QVariant data(const QModelIndex& index, int role) const override;
  QVariant headerData(int section, Qt::Orientation orientation, int role) const override;
  Qt::ItemFlags flags(const QModelIndex& index) const override;

 private:
  std::size_t At(int row, int column) const;
  QString SpokenName(int row, int column) const;
  QString ToolTip(int row, int column) const;

  int rows_ = 0;
  int columns_ = 0;
  std::vector<GridCell> cells_;
  std::function<QString(int row, int column)> tool_tips_;
  QRect changed_;  // x is the column; titles included
};

}  // namespace quillon
