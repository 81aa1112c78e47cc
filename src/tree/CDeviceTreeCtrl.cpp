// SPDX-License-Identifier: MIT
#include "tree/CDeviceTreeCtrl.h"

#include <QContextMenuEvent>
#include <QHeaderView>
#include <QKeyEvent>
#include <QMenu>
#include <QMouseEvent>
#include <QScopedValueRollback>
#include <QTimer>
#include <optional>

#include "devlink/Products.h"
#include "res/Icons.h"

namespace quillon {
namespace {

constexpr int kLeastCharacters = 32;

// The firmware of the first kind knows nothing of nodes.
bool HasNodesToRead(const DeviceTable& table, std::uint32_t board) {
  return ProductOf(table.Record(board).product_id).nodes_in_tree &&
         table.Type(board) != KVUSB_TYPE_FIRMWARE;
}

}  // namespace

CDeviceTreeCtrl::CDeviceTreeCtrl(BoardLink& link, QWidget* parent)
    : QTreeView(parent), link_(link) {
  setModel(&model_);
  setAccessibleName(QStringLiteral("Devices"));
  setHeaderHidden(true);
  setRootIsDecorated(true);
  setUniformRowHeights(true);
  setIconSize(QSize(16, 16));
  setSelectionMode(SingleSelection);
  setEditTriggers(NoEditTriggers);
  // Long labels are scrolled to, not cut. Measuring what is in view is enough, and does not slow
  // down with the number of boards.
  header()->setStretchLastSection(false);
  header()->setSectionResizeMode(QHeaderView::ResizeToContents);
  header()->setResizeContentsPrecision(0);
}

QSize CDeviceTreeCtrl::minimumSizeHint() const {
  return {fontMetrics().averageCharWidth() * kLeastCharacters,
          QTreeView::minimumSizeHint().height()};
}

void CDeviceTreeCtrl::Rebuild() {
  const std::vector<NodeList> nodes = ReadNodes();
  model_.Rebuild(link_.table, nodes);
  for (int root = 0; root < model_.rowCount(); ++root) expand(model_.index(root, 0));
  Highlight(model_.IndexOfBoard(link_.table.Current()));
  emit BoardSelected();
}

// Reads the nodes of every node I/O system before any item is selected. A rebuild goes back to the
// first board then, and not to the one that was current before: this is intended.
std::vector<NodeList> CDeviceTreeCtrl::ReadNodes() {
  DeviceTable& table = link_.table;
  if (!DeviceTreeModel::Lists(table)) return {};
  std::vector<NodeList> nodes(table.Count());
  for (std::uint32_t i = 0; i < table.Count(); ++i) {
    if (!HasNodesToRead(table, i)) continue;
    table.SetCurrent(i);
    if (read_nodes_) nodes[i] = read_nodes_();
    table.SetCurrent(0);
  }
  return nodes;
}

// Moves the highlight without a choice being made by it.
void CDeviceTreeCtrl::Highlight(const QModelIndex& item) {
  const QScopedValueRollback quiet(highlighting_, true);
  setCurrentIndex(item);
  chosen_ = item;
}

void CDeviceTreeCtrl::selectionChanged(const QItemSelection& selected,
                                       const QItemSelection& deselected) {
  QTreeView::selectionChanged(selected, deselected);
  if (highlighting_ || selected.isEmpty()) return;
  if (link_.gate.IsOpen()) {
    Choose(selected.indexes().first());
  } else {
    // Later, because the view is still busy moving to the item.
    QTimer::singleShot(0, this, [this] { Highlight(chosen_); });
  }
}

QItemSelectionModel::SelectionFlags CDeviceTreeCtrl::selectionCommand(const QModelIndex& index,
                                                                      const QEvent* event) const {
  const auto command = QTreeView::selectionCommand(index, event);
  return command.testFlag(QItemSelectionModel::Deselect) ? QItemSelectionModel::NoUpdate : command;
}

void CDeviceTreeCtrl::Choose(const QModelIndex& item) {
  chosen_ = item;
  const std::uint32_t board = model_.BoardOf(item);
  if (board == DeviceTreeModel::kNoBoard) return;
  const bool is_current = board == link_.table.Current();
  link_.table.SetCurrent(board);
  model_.SetCurrent(board);
  const TreeItemKind kind = model_.Kind(item);
  if (kind == TreeItemKind::kPort) {
    emit PortSelected(ChosenPort());
  } else if (kind != TreeItemKind::kNode || !is_current) {
    emit BoardSelected();
  }
}

int CDeviceTreeCtrl::ChosenPort() const {
  if (!chosen_.isValid() || model_.Kind(chosen_) != TreeItemKind::kPort) return 0;
  return chosen_.data(DeviceTreeModel::kItemDataRole).toInt();
}

void CDeviceTreeCtrl::mousePressEvent(QMouseEvent* event) {
  // The context menu decides what the right button selects.
  if (event->button() != Qt::RightButton) QTreeView::mousePressEvent(event);
}

void CDeviceTreeCtrl::keyPressEvent(QKeyEvent* event) {
  // All platforms turn the menu key into a context menu event, but not all of them do so with this
  // key.
  if (event->key() == Qt::Key_F10 && event->modifiers() == Qt::ShiftModifier) {
    OpenMenuAtHighlight();
  } else {
    QTreeView::keyPressEvent(event);
  }
}

// The highlight reaches from edge to edge, also where the labels are short.
void CDeviceTreeCtrl::resizeEvent(QResizeEvent* event) {
  QTreeView::resizeEvent(event);
  header()->setMinimumSectionSize(viewport()->width());
}

void CDeviceTreeCtrl::contextMenuEvent(QContextMenuEvent* event) {
  if (event->reason() == QContextMenuEvent::Keyboard) return OpenMenuAtHighlight();
  if (!link_.gate.IsOpen()) return;
  const QPersistentModelIndex at = indexAt(event->pos());
  if (at.isValid() && !IsNonDetected(model_.Kind(at))) setCurrentIndex(at);
  OpenMenu(at, event->globalPos());
}

void CDeviceTreeCtrl::OpenMenuAtHighlight() {
  const QModelIndex at = currentIndex();
  scrollTo(at);
  OpenMenu(at, viewport()->mapToGlobal(visualRect(at).bottomLeft()));
}

void CDeviceTreeCtrl::OpenMenu(const QModelIndex& at, const QPoint& position) {
  std::optional<DeviceTool> tool;
  if (const auto hold = link_.gate.TryEnter()) {
    const auto menu = MakeMenu(at);
    if (const QAction* chosen = menu->exec(position)) {
      tool = static_cast<DeviceTool>(chosen->data().toInt());
    }
  }
  if (tool) Run(*tool);
}

std::unique_ptr<QMenu> CDeviceTreeCtrl::MakeMenu(const QModelIndex& at) {
  auto menu = std::make_unique<QMenu>(QStringLiteral("Device Tools"), this);
  menu->setAccessibleName(menu->title());
  menu->setToolTipsVisible(true);
  const auto kind = at.isValid() ? std::optional(model_.Kind(at)) : std::nullopt;
  for (const DeviceToolEntry& entry : DeviceToolEntries()) {
    if (entry.tool == DeviceTool::kExpandAll) menu->addSeparator();
    const bool offered = IsOffered(entry, kind);
    QAction* action = menu->addAction(Icon(entry.icon), QString::fromUtf8(entry.text));
    action->setData(static_cast<int>(entry.tool));
    action->setEnabled(offered);
    action->setToolTip(QString::fromUtf8(offered ? entry.purpose : entry.elsewhere));
    action->setStatusTip(action->toolTip());
  }
  return menu;
}

void CDeviceTreeCtrl::Run(DeviceTool tool) {
  switch (tool) {
    case DeviceTool::kRefresh:
      emit RefreshRequested();
      break;
    case DeviceTool::kRestartFlash:
      emit RestartRequested(true);
      break;
    case DeviceTool::kRestartDevice:
      emit RestartRequested(false);
      break;
    case DeviceTool::kLoadDefaults:
      emit LoadDefaultsRequested();
      break;
    case DeviceTool::kCheckUpdate:
      emit FirmwareCheckRequested();
      break;
    case DeviceTool::kExpandAll:
      expandAll();
      break;
    case DeviceTool::kCollapseAll:
      collapseAll();
      break;
  }
}

}  // namespace quillon
