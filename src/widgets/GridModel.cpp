// SPDX-License-Identifier: MIT
#include "widgets/GridModel.h"

#include <QBrush>
#include <algorithm>

namespace quillon {

void GridModel::Resize(int rows, int columns) {
  beginResetModel();
  rows_ = std::max(rows, 0);
  columns_ = std::max(columns, 0);
  cells_.assign(static_cast<std::size_t>(rows_) * static_cast<std::size_t>(columns_), {});
  changed_ = {};
  endResetModel();
}

bool GridModel::Holds(int row, int column) const {
  return row >= 0 && row < rows_ && column >= 0 && column < columns_;
}

std::size_t GridModel::At(int row, int column) const {
  Q_ASSERT(Holds(row, column));
  return static_cast<std::size_t>(row) * static_cast<std::size_t>(columns_) +
         static_cast<std::size_t>(column);
}

GridCell& GridModel::Change(int row, int column) {
  changed_ |= QRect(column, row, 1, 1);
  return cells_[At(row, column)];
}

void GridModel::SetToolTips(std::function<QString(int row, int column)> tool_tips) {
  tool_tips_ = std::move(tool_tips);
}

QString GridModel::ToolTip(int row, int column) const {
  return tool_tips_ ? tool_tips_(row, column) : QString();
}

void GridModel::Redraw() {
  const QRect changed = std::exchange(changed_, {});
  if (changed.isEmpty()) return;
  const int top = std::max(changed.top(), 1);
  const int left = std::max(changed.left(), 1);
  if (changed.top() == 0 && changed.right() >= left) {
    emit headerDataChanged(Qt::Horizontal, left - 1, changed.right() - 1);
  }
  if (changed.left() == 0 && changed.bottom() >= top) {
    emit headerDataChanged(Qt::Vertical, top - 1, changed.bottom() - 1);
  }
  if (changed.bottom() >= top && changed.right() >= left) {
    emit dataChanged(IndexOf(top, left), IndexOf(changed.bottom(), changed.right()));
  }
}

QString GridModel::Words(int row, int column) const {
  const GridCell& cell = Cell(row, column);
  if (!cell.enabled || !IsToggle(cell.kind)) return cell.text;
  return cell.value != 0 ? tr("on") : tr("off");
}

QString GridModel::SpokenName(int row, int column) const {
  QStringList parts{Cell(row, 0).text.trimmed(), Cell(0, column).text.trimmed()};
  parts << (Cell(row, column).enabled ? Words(row, column).trimmed() : tr("not available"));
  if (Cell(row, column).marked)
    parts << (Cell(row, column).edited ? tr("edited") : tr("not what the board holds"));
  parts.removeAll(QString());
  return parts.join(QStringLiteral(", "));
}

int GridModel::rowCount(const QModelIndex& parent) const {
  return parent.isValid() ? 0 : std::max(rows_ - 1, 0);
}

int GridModel::columnCount(const QModelIndex& parent) const {
  return parent.isValid() ? 0 : std::max(columns_ - 1, 0);
}

QVariant GridModel::data(const QModelIndex& index, int role) const {
  if (!index.isValid()) return {};
  const int row = RowOf(index);
  const int column = ColumnOf(index);
  const GridCell& cell = Cell(row, column);
  switch (role) {
    case Qt::DisplayRole:
    case Qt::EditRole:
      return IsToggle(cell.kind) ? QVariant() : cell.text;
    case Qt::CheckStateRole:
      if (!IsToggle(cell.kind) || !cell.enabled) return {};
      return static_cast<int>(cell.value != 0 ? Qt::Checked : Qt::Unchecked);
    case Qt::BackgroundRole:
      return cell.background ? QVariant(QBrush(QColor(*cell.background))) : QVariant();
    case Qt::ToolTipRole:
      return ToolTip(row, column);
    case Qt::AccessibleTextRole:
      return SpokenName(row, column);
    default:
      return {};
  }
}

QVariant GridModel::headerData(int section, Qt::Orientation orientation, int role) const {
  const bool columns = orientation == Qt::Horizontal;
  const int row = columns ? 0 : section + 1;
  const int column = columns ? section + 1 : 0;
  if (section < 0 || !Holds(row, column)) return {};
  const GridCell& cell = Cell(row, column);
  switch (role) {
    case Qt::DisplayRole:
      return cell.text;
    case Qt::BackgroundRole:
      return cell.background ? QVariant(QBrush(QColor(*cell.background))) : QVariant();
    case Qt::ToolTipRole:
      return columns ? ToolTip(0, column) : QString();
    case Qt::AccessibleTextRole:
      return cell.text.trimmed();
    default:
      return {};
  }
}

Qt::ItemFlags GridModel::flags(const QModelIndex& index) const {
  if (!index.isValid()) return Qt::NoItemFlags;
  const GridCell& cell = Cell(RowOf(index), ColumnOf(index));
  if (!cell.enabled) return Qt::ItemNeverHasChildren;
  const Qt::ItemFlags flags = Qt::ItemIsEnabled | Qt::ItemIsSelectable | Qt::ItemNeverHasChildren;
  return cell.kind == CellKind::kNumber ? flags | Qt::ItemIsEditable : flags;
}

}  // namespace quillon
