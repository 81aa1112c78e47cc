// SPDX-License-Identifier: MIT
#pragma once

#include <QAbstractItemModel>
#include <QAbstractTableModel>
#include <vector>

namespace quillon::bench {

// A tree of boards, nodes and ports in one vector, with pointers as ids: the shape of the device
// tree and nothing else.
class BareTreeModel : public QAbstractItemModel {
  Q_OBJECT

 public:
  using QAbstractItemModel::QAbstractItemModel;

  // Two roots; the second holds all boards, and the first one item.
  void Rebuild(std::size_t boards, std::size_t nodes_per_board, std::size_t ports_per_node);

  QModelIndex index(int row, int column, const QModelIndex& parent = {}) const override;
  QModelIndex parent(const QModelIndex& child) const override;
  int rowCount(const QModelIndex& parent = {}) const override;
  int columnCount(const QModelIndex& parent = {}) const override;
  QVariant data(const QModelIndex& index, int role) const override;

 private:
  struct Item {
    Item* parent;
    Item* children;
    int child_count;
    int row;
  };

  void AddChildren(Item& parent, std::size_t count);

  std::vector<Item> items_;
};

// A table of texts.
class BareTableModel : public QAbstractTableModel {
  Q_OBJECT

 public:
  BareTableModel(int rows, int columns, QObject* parent);

  // Another text in every cell, and one dataChanged.
  void Fill(int value);

  int rowCount(const QModelIndex& parent = {}) const override;
  int columnCount(const QModelIndex& parent = {}) const override;
  QVariant data(const QModelIndex& index, int role) const override;

 private:
  int rows_;
  int columns_;
  std::vector<QString> texts_;
};

}  // namespace quillon::bench
