// SPDX-License-Identifier: MIT
#include "tree/DeviceTreeModel.h"

#include <QFont>
#include <QGuiApplication>
#include <QPainter>
#include <QPalette>
#include <algorithm>

#include "devlink/DeviceText.h"
#include "devlink/Products.h"
#include "kvusb/kvusb.h"
#include "res/Icons.h"

namespace quillon {
namespace {

// By TreeItemKind.
constexpr std::array<const char*, kTreeItemKinds> kIconNames{
    "tree-flash-root",   "tree-device-root", "tree-none", "tree-flash-board",
    "tree-device-board", "tree-none",        "tree-node", "tree-port"};

TreeItemKind KindOfType(std::uint32_t type) {
  switch (type) {
    case KVUSB_TYPE_LOADER:
      return TreeItemKind::kFlashBoard;
    case KVUSB_TYPE_FIRMWARE:
    case KVUSB_TYPE_FIRMWARE_ID:
      return TreeItemKind::kDeviceBoard;
    default:
      return TreeItemKind::kUnknownBoard;
  }
}

// The icon with the warning sign over it, in both resolutions that icons are kept in. On the
// highlight, which tints icons, the sign keeps its colour.
QIcon WithSign(const QIcon& icon) {
  constexpr QSize kSize(16, 16);
  const QIcon sign = Icon("tree-problem");
  QIcon signed_icon;
  for (const QIcon::Mode mode : {QIcon::Normal, QIcon::Selected}) {
    for (const qreal ratio : {1.0, 2.0}) {
      QPixmap pixmap = icon.pixmap(kSize, ratio, mode);
      QPainter(&pixmap).drawPixmap(QRect(QPoint(), kSize), sign.pixmap(kSize, ratio));
      signed_icon.addPixmap(pixmap, mode);
    }
  }
  return signed_icon;
}

std::size_t PresentNodes(const NodeList& nodes) {
  const std::size_t shown = std::min(nodes.size(), DeviceTreeModel::kMaxNodes);
  return static_cast<std::size_t>(
      std::count(nodes.begin(), nodes.begin() + static_cast<std::ptrdiff_t>(shown), true));
}

}  // namespace

DeviceTreeModel::DeviceTreeModel(QObject* parent) : QAbstractItemModel(parent) {
  std::transform(kIconNames.begin(), kIconNames.end(), icons_.begin(), Icon);
  Fill({});
}

void DeviceTreeModel::Rebuild(const DeviceTable& table, std::span<const NodeList> nodes) {
  beginResetModel();
  table_ = &table;
  current_ = table.Current();
  Fill(nodes);
  endResetModel();
}

DeviceTreeModel::Item& DeviceTreeModel::Append(std::vector<Item>& level, Item& parent,
                                               TreeItemKind kind, std::uint32_t number) {
  Item& item = level.emplace_back(Item{&parent, nullptr, 0, parent.child_count++, kind, number});
  if (parent.children == nullptr) parent.children = &item;
  return item;
}

void DeviceTreeModel::Fill(std::span<const NodeList> nodes) {
  const std::uint32_t count = table_ != nullptr && Lists(*table_) ? table_->Count() : 0;
  nodes = nodes.first(std::min<std::size_t>(nodes.size(), count));
  std::size_t node_count = 0;
  for (const NodeList& list : nodes) node_count += PresentNodes(list);

  // Items point at each other: every level gets its whole room before the first one is made.
  roots_ = {Item{nullptr, nullptr, 0, 0, TreeItemKind::kFlashRoot, 0},
            Item{nullptr, nullptr, 0, 1, TreeItemKind::kDeviceRoot, 0}};
  boards_.clear();
  boards_.reserve(count + roots_.size());
  nodes_.clear();
  nodes_.reserve(node_count);
  ports_.clear();
  ports_.reserve(2 * node_count);

  const NodeList none;
  for (Item& root : roots_) {
    for (std::uint32_t i = 0; i < count; ++i) {
      const TreeItemKind kind = KindOfType(table_->Type(i));
      const bool flash = kind == TreeItemKind::kFlashBoard;
      if (flash != (root.kind == TreeItemKind::kFlashRoot)) continue;
      AddBoard(root, kind, i, i < nodes.size() ? nodes[i] : none);
    }
    if (root.child_count == 0) Append(boards_, root, TreeItemKind::kPlaceholder, 0);
  }
}

void DeviceTreeModel::AddBoard(Item& root, TreeItemKind kind, std::uint32_t board,
                               const NodeList& nodes) {
  Item& item = Append(boards_, root, kind, board);
  const auto image = static_cast<std::size_t>(kind);
  if (HasProblem(item) && problem_icons_[image].isNull()) {
    problem_icons_[image] = WithSign(icons_[image]);
  }
  for (std::uint32_t j = 0; j < nodes.size() && j < kMaxNodes; ++j) {
    if (!nodes[j]) continue;
    Item& node = Append(nodes_, item, TreeItemKind::kNode, j + 1);
    Append(ports_, node, TreeItemKind::kPort, 2 * j + 1);
    Append(ports_, node, TreeItemKind::kPort, 2 * j + 2);
  }
}

void DeviceTreeModel::SetCurrent(std::uint32_t board) {
  const std::uint32_t former = std::exchange(current_, board);
  if (former == board) return;
  for (const QModelIndex& changed : {IndexOfBoard(former), IndexOfBoard(board)}) {
    if (changed.isValid()) emit dataChanged(changed, changed, {Qt::FontRole});
  }
}

std::uint32_t DeviceTreeModel::BoardOf(const QModelIndex& index) const {
  const Item* item = &ItemAt(index);
  while (item != nullptr && !IsBoard(item->kind)) item = item->parent;
  return item == nullptr ? kNoBoard : item->number;
}

QModelIndex DeviceTreeModel::IndexOfBoard(std::uint32_t board) const {
  const auto found = std::find_if(boards_.begin(), boards_.end(), [board](const Item& item) {
    return IsBoard(item.kind) && item.number == board;
  });
  return found == boards_.end() ? QModelIndex() : createIndex(found->row, 0, &*found);
}

QModelIndex DeviceTreeModel::index(int row, int column, const QModelIndex& parent) const {
  if (row < 0 || column != 0 || row >= rowCount(parent)) return {};
  const Item* first = parent.isValid() ? ItemAt(parent).children : roots_.data();
  return createIndex(row, column, first + row);
}

QModelIndex DeviceTreeModel::parent(const QModelIndex& child) const {
  const Item* parent = child.isValid() ? ItemAt(child).parent : nullptr;
  return parent != nullptr ? createIndex(parent->row, 0, parent) : QModelIndex();
}

int DeviceTreeModel::rowCount(const QModelIndex& parent) const {
  return parent.isValid() ? ItemAt(parent).child_count : static_cast<int>(roots_.size());
}

int DeviceTreeModel::columnCount(const QModelIndex& /*parent*/) const { return 1; }

Qt::ItemFlags DeviceTreeModel::flags(const QModelIndex& index) const {
  if (!index.isValid()) return Qt::NoItemFlags;
  const Qt::ItemFlags flags = Qt::ItemIsEnabled | Qt::ItemIsSelectable;
  return ItemAt(index).child_count == 0 ? flags | Qt::ItemNeverHasChildren : flags;
}

QVariant DeviceTreeModel::data(const QModelIndex& index, int role) const {
  if (!index.isValid()) return {};
  const Item& item = ItemAt(index);
  switch (role) {
    case Qt::DisplayRole:
      return Label(item);
    case Qt::DecorationRole:
      return (HasProblem(item) ? problem_icons_ : icons_)[static_cast<std::size_t>(item.kind)];
    case Qt::FontRole: {
      if (!IsBoard(item.kind) || item.number != current_) return {};
      QFont bold;
      bold.setBold(true);
      return bold;
    }
    case Qt::ForegroundRole:
      if (!IsNonDetected(item.kind)) return {};
      return QGuiApplication::palette().brush(QPalette::PlaceholderText);
    case Qt::ToolTipRole:
      return IsBoard(item.kind) ? QVariant(ToolTip(item)) : QVariant();
    case Qt::AccessibleDescriptionRole:
      return IsBoard(item.kind) ? QVariant(Describe(item)) : QVariant();
    case kItemDataRole:
      if (IsBoard(item.kind)) return item.number + 1;
      return item.kind == TreeItemKind::kPort ? QVariant(item.number) : QVariant();
    default:
      return {};
  }
}

QString DeviceTreeModel::Label(const Item& item) const {
  switch (item.kind) {
    case TreeItemKind::kFlashRoot:
      return QStringLiteral("Flash Mode");
    case TreeItemKind::kDeviceRoot:
      return QStringLiteral("Device Mode");
    case TreeItemKind::kPlaceholder:
    case TreeItemKind::kUnknownBoard:
      return QStringLiteral("Non Detected");
    case TreeItemKind::kFlashBoard:
    case TreeItemKind::kDeviceBoard:
      return QString::fromStdString(BoardLabel(table_->Record(item.number)));
    case TreeItemKind::kNode:
      return QStringLiteral("Node %1").arg(item.number);
    case TreeItemKind::kPort:
      return QStringLiteral("Port %1").arg(QChar(u'A' + static_cast<char16_t>(item.number - 1)));
  }
  return {};
}

bool DeviceTreeModel::HasProblem(const Item& item) const {
  return IsBoard(item.kind) && table_->ProblemOf(item.number).kind != KVUSB_PROBLEM_NONE;
}

QString DeviceTreeModel::Describe(const Item& item) const {
  const auto id = static_cast<unsigned>(table_->Record(item.number).product_id);
  const char* mode = item.kind == TreeItemKind::kFlashBoard    ? "in Flash Mode"
                     : item.kind == TreeItemKind::kDeviceBoard ? "in Device Mode"
                                                               : "in an unknown mode";
  const char* current = item.number == current_ ? " (current board)" : "";
  QString text = QString::asprintf("Product id 0x%04X, %s%s", id, mode, current);
  if (table_->IsRestarting(item.number)) {
    text += ProductOf(table_->Record(item.number).product_id).nodes_in_tree
                ? tr(". It was told to restart; its nodes are listed when it is back")
                : tr(". It was told to restart");
  }
  return HasProblem(item) ? text + QStringLiteral(". ") + ProblemText(item) : text;
}

// A tool tip would take the library's text for markup if it looked like that, so it is given some
// that does not.
QString DeviceTreeModel::ToolTip(const Item& item) const {
  QString text = Describe(item);
  if (!HasProblem(item)) return text;
  return QStringLiteral("<qt>%1</qt>").arg(text.toHtmlEscaped());
}

QString DeviceTreeModel::ProblemText(const Item& item) const {
  const std::string sentence = ShownText(table_->ProblemOf(item.number).sentence);
  if (sentence.empty()) return tr("It does not work, and the HID library does not say why.");
  return QString::fromStdString(sentence);
}

}  // namespace quillon
