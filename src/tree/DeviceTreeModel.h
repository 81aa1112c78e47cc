// SPDX-License-Identifier: MIT
#pragma once

#include <QAbstractItemModel>
#include <QIcon>
#include <array>
#include <cstdint>
#include <span>
#include <vector>

#include "devlink/DeviceTable.h"

namespace quillon {

// Which nodes of a node I/O system are present: entry j is node j + 1. Empty where there is no
// list.
using NodeList = std::vector<bool>;

enum class TreeItemKind : std::uint8_t {
  kFlashRoot,
  kDeviceRoot,
  kPlaceholder,   // "Non Detected", the only child of a root without boards
  kFlashBoard,    // runs its firmware loader
  kDeviceBoard,   // runs its firmware
  kUnknownBoard,  // a type that no library should report; shown as not detected, yet selectable
  kNode,
  kPort,
};
inline constexpr std::size_t kTreeItemKinds = 8;

// Whether the item reads "Non Detected".
constexpr bool IsNonDetected(TreeItemKind kind) {
  return kind == TreeItemKind::kPlaceholder || kind == TreeItemKind::kUnknownBoard;
}

constexpr bool IsBoard(TreeItemKind kind) {
  return kind == TreeItemKind::kFlashBoard || kind == TreeItemKind::kDeviceBoard ||
         kind == TreeItemKind::kUnknownBoard;
}

// Two roots, the boards of a device table below them, the nodes of a node I/O system below its
// board, and two ports below each node.
//
// An index carries a pointer to its item, not a number: the view keeps expanded items in a hash of
// indexes, where small numbers collide by the thousand. Labels are made from the table's records
// when they are shown. So the table must outlive the model, and every change of it must be followed
// by Rebuild().
class DeviceTreeModel : public QAbstractItemModel {
  Q_OBJECT

 public:
  // Board: table index + 1. Port: its number from 1. Nothing for all other items.
  static constexpr int kItemDataRole = Qt::UserRole;

  static constexpr std::size_t kMaxNodes = 12;
  static constexpr std::uint32_t kNoBoard = ~std::uint32_t{0};

  explicit DeviceTreeModel(QObject* parent = nullptr);

  // Whether the table's boards are listed at all; a first type of 0 stands for an empty table.
  static bool Lists(const DeviceTable& table) { return !table.IsEmpty() && table.Type(0) != 0; }

  // Replaces everything. Entry i of `nodes` belongs to board i; missing entries are empty lists.
  // The table's current board is the one in bold.
  void Rebuild(const DeviceTable& table, std::span<const NodeList> nodes = {});

  // Shows this board in bold, and no other. kNoBoard: none.
  void SetCurrent(std::uint32_t board);

  TreeItemKind Kind(const QModelIndex& index) const { return ItemAt(index).kind; }
  // The board that an item is or stands under; kNoBoard for a root and a placeholder.
  std::uint32_t BoardOf(const QModelIndex& index) const;
  // Invalid when the board is not listed.
  QModelIndex IndexOfBoard(std::uint32_t board) const;

  QModelIndex index(int row, int column, const QModelIndex& parent = {}) const override;
  QModelIndex parent(const QModelIndex& child) const override;
  int rowCount(const QModelIndex& parent = {}) const override;
  int columnCount(const QModelIndex& parent = {}) const override;
  Qt::ItemFlags flags(const QModelIndex& index) const override;
  QVariant data(const QModelIndex& index, int role) const override;

 private:
  struct Item {
    Item* parent;
    Item* children;  // the first; the others follow it in their level
    int child_count;
    int row;
    TreeItemKind kind;
    std::uint32_t number;  // board: table index; node and port: number from 1
  };

  static const Item& ItemAt(const QModelIndex& index) {
    return *static_cast<const Item*>(index.constInternalPointer());
  }
  static Item& Append(std::vector<Item>& level, Item& parent, TreeItemKind kind,
                      std::uint32_t number);
  void Fill(std::span<const NodeList> nodes);
  void AddBoard(Item& root, TreeItemKind kind, std::uint32_t board, const NodeList& nodes);
  bool HasProblem(const Item& item) const;
  QString Label(const Item& item) const;
  QString Describe(const Item& item) const;
  QString ToolTip(const Item& item) const;
  QString ProblemText(const Item& item) const;

  const DeviceTable* table_ = nullptr;
  std::uint32_t current_ = kNoBoard;
  std::array<QIcon, kTreeItemKinds> icons_;
  std::array<QIcon, kTreeItemKinds> problem_icons_;  // made when the first such board comes

  // One vector a level, so that an item's children stand side by side.
  std::vector<Item> roots_;
  std::vector<Item> boards_;
  std::vector<Item> nodes_;
  std::vector<Item> ports_;
};

}  // namespace quillon
