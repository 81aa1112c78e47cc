// SPDX-License-Identifier: MIT
#include "bench/views/BareViews.h"

#include <algorithm>

namespace quillon::bench {

BareTreeModel::Item* BareTreeModel::Add(Item* parent, const QString& text) {
  std::vector<Item*>& level = parent == nullptr ? roots_ : parent->children;
  items_.push_back(std::make_unique<Item>(Item{parent, static_cast<int>(level.size()), text}));
  level.push_back(items_.back().get());
  return level.back();
}

void BareTreeModel::Rebuild(int boards, int nodes_per_board, int ports_per_node) {
  beginResetModel();
  roots_.clear();
  items_.clear();
  Add(nullptr, QStringLiteral("Root 1"));
  Item* const root = Add(nullptr, QStringLiteral("Root 2"));
  for (int i = 0; i < boards; ++i) {
    Item* const board = Add(root, QStringLiteral("Board of a certain kind 000"));
    for (int j = 0; j < nodes_per_board; ++j) {
      Item* const node = Add(board, QStringLiteral("Node"));
      for (int k = 0; k < ports_per_node; ++k) Add(node, QStringLiteral("Port"));
    }
  }
  endResetModel();
}

QModelIndex BareTreeModel::index(int row, int column, const QModelIndex& parent) const {
  if (row < 0 || column != 0 || row >= rowCount(parent)) return {};
  const auto& level =
      parent.isValid() ? static_cast<Item*>(parent.internalPointer())->children : roots_;
  return createIndex(row, column, level[static_cast<std::size_t>(row)]);
}

QModelIndex BareTreeModel::parent(const QModelIndex& child) const {
  if (!child.isValid()) return {};
  Item* const parent = static_cast<Item*>(child.internalPointer())->parent;
  return parent == nullptr ? QModelIndex() : createIndex(parent->row, 0, parent);
}

int BareTreeModel::rowCount(const QModelIndex& parent) const {
  const auto& level =
      parent.isValid() ? static_cast<Item*>(parent.internalPointer())->children : roots_;
  return static_cast<int>(level.size());
}

int BareTreeModel::columnCount(const QModelIndex& /*parent*/) const { return 1; }

QVariant BareTreeModel::data(const QModelIndex& index, int role) const {
  if (!index.isValid() || role != Qt::DisplayRole) return {};
  return static_cast<Item*>(index.internalPointer())->text;
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
