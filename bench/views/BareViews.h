// SPDX-License-Identifier: MIT
#pragma once

#include <QAbstractItemModel>
#include <QAbstractTableModel>
#include <memory>
#include <vector>

namespace quillon::bench {

// A tree of boards, nodes and ports, with pointers as ids and a text per item: the shape of the
// device tree and nothing else.
class BareTreeModel : public QAbstractItemModel {
  Q_OBJECT

 public:
  using QAbstractItemModel::QAbstractItemModel;

  // Two roots; the second holds all boards.
  void Rebuild(int boards, int nodes_per_board, int ports_per_node);
  int Items() const { return static_cast<int>(items_.size()); }

  QModelIndex index(int row, int column, const QModelIndex& parent = {}) const override;
  QModelIndex parent(const QModelIndex& child) const override;
  int rowCount(const QModelIndex& parent = {}) const override;
  int columnCount(const QModelIndex& parent = {}) const override;
  QVariant data(const QModelIndex& index, int role) const override;

 private:
  struct Item {
    Item* parent = nullptr;
    int row = 0;
    QString text;
    std::vector<Item*> children{};
  };

  Item* Add(Item* parent, const QString& text);

  std::vector<std::unique_ptr<Item>> items_;
  std::vector<Item*> roots_;
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
