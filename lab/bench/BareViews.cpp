// SPDX-License-Identifier: MIT
#include "bench/BareViews.h"

#include <algorithm>

namespace quillon::bench {

void BareTreeModel::AddChildren(Item& parent, std::size_t count) {
  parent.children = items_.data() + items_.size();
  parent.child_count = static_cast<int>(count);
  for (int row = 0; row < parent.child_count; ++row) items_.push_back({&parent, nullptr, 0, row});
}

void BareTreeModel::Rebuild(std::size_t boards, std::size_t nodes_per_board,
                            std::size_t ports_per_node) {
  beginResetModel();
  const std::size_t nodes = boards * nodes_per_board;
  items_.clear();
  // Items point at each other, so all the memory is reserved first.
  items_.reserve(3 + boards + nodes + nodes * ports_per_node);
  items_.push_back({nullptr, nullptr, 0, 0});
  items_.push_back({nullptr, nullptr, 0, 1});
  AddChildren(items_[0], 1);
  AddChildren(items_[1], boards);
  const std::size_t first_node = items_.size();
  for (std::size_t i = 0; i < boards; ++i) AddChildren(items_[3 + i], nodes_per_board);
  for (std::size_t i = 0; i < nodes; ++i) AddChildren(items_[first_node + i], ports_per_node);
  endResetModel();
}

QModelIndex BareTreeModel::index(int row, int column, const QModelIndex& parent) const {
  if (row < 0 || column != 0 || row >= rowCount(parent)) return {};
  const Item* const first =
      parent.isValid() ? static_cast<Item*>(parent.internalPointer())->children : items_.data();
  return createIndex(row, column, first + row);
}

QModelIndex BareTreeModel::parent(const QModelIndex& child) const {
  if (!child.isValid()) return {};
  const Item* const parent = static_cast<Item*>(child.internalPointer())->parent;
  return parent == nullptr ? QModelIndex() : createIndex(parent->row, 0, parent);
}

int BareTreeModel::rowCount(const QModelIndex& parent) const {
  if (parent.isValid()) return static_cast<Item*>(parent.internalPointer())->child_count;
  return items_.empty() ? 0 : 2;
}

int BareTreeModel::columnCount(const QModelIndex& /*parent*/) const { return 1; }

QVariant BareTreeModel::data(const QModelIndex& index, int role) const {
  if (!index.isValid() || role != Qt::DisplayRole) return {};
  return QStringLiteral("Board of a certain kind 000");
}

BareTableModel::BareTableModel(int rows, int columns, QObject* parent)
    : QAbstractTableModel(parent),
      rows_(rows),
      columns_(columns),
      texts_(static_cast<std::size_t>(rows) * static_cast<std::size_t>(columns)) {}

void BareTableModel::Fill(int value) {
  std::fill(texts_.begin(), texts_.end(), QStringLiteral("Button %1").arg(value));
  Q_EMIT dataChanged(index(0, 0), index(rows_ - 1, columns_ - 1));
}

int BareTableModel::rowCount(const QModelIndex& parent) const {
  return parent.isValid() ? 0 : rows_;
}

int BareTableModel::columnCount(const QModelIndex& parent) const {
  return parent.isValid() ? 0 : columns_;
}

QVariant BareTableModel::data(const QModelIndex& index, int role) const {
  if (!index.isValid() || role != Qt::DisplayRole) return {};
  return texts_[static_cast<std::size_t>(index.row()) * static_cast<std::size_t>(columns_) +
                static_cast<std::size_t>(index.column())];
}

}  // namespace quillon::bench
