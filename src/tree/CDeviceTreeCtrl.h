// SPDX-License-Identifier: MIT
#pragma once

#include <QPersistentModelIndex>
#include <QTreeView>
#include <functional>
#include <memory>
#include <vector>

#include "devlink/BoardLink.h"
#include "tree/DeviceTools.h"
#include "tree/DeviceTreeModel.h"

class QMenu;

namespace quillon {

// The tree of detected boards on the left of the main window, and its context menu. Choosing a
// board, or a node or port below it, makes it the table's current one before anybody is told: what
// is chosen is what the program talks to. While something holds the gate, no board can be chosen
// and the menu does not open: an exchange must not find another board in the place of its own.
class CDeviceTreeCtrl : public QTreeView {
  Q_OBJECT

 public:
  // Reads the node list of the table's current board, a node I/O system.
  using NodeReader = std::function<NodeList()>;

  explicit CDeviceTreeCtrl(BoardLink& link, QWidget* parent = nullptr);

  // Without a reader no board has nodes.
  void SetNodeReader(NodeReader reader) { read_nodes_ = std::move(reader); }

  // Wide enough to tell boards apart.
  QSize minimumSizeHint() const override;

  // The port that is chosen, counted from 1; 0 when anything else is.
  int ChosenPort() const;

  // Builds the tree anew from the table, with the boards visible and their nodes collapsed. Reads
  // all nodes first. Then selects the current board, which is the first one if nodes were to be
  // read, and emits BoardSelected() once, even without a board. The caller may hold the gate.
  void Rebuild();

  // The context menu for an item (or none); an action's data() is its DeviceTool as an int.
  std::unique_ptr<QMenu> MakeMenu(const QModelIndex& at);

  // Does what an entry of the menu says.
  void Run(DeviceTool tool);

 signals:
  // The table's current board was chosen, itself or by a node of it; after a rebuild perhaps none.
  // Not sent for a node of the board that was current already.
  void BoardSelected();
  // A port of the table's current board, counted from 1, was chosen.
  void PortSelected(int port);

  void RefreshRequested();
  void RestartRequested(bool to_flash_mode);
  void LoadDefaultsRequested();
  void FirmwareCheckRequested();

 protected:
  void mousePressEvent(QMouseEvent* event) override;
  void resizeEvent(QResizeEvent* event) override;
  void keyPressEvent(QKeyEvent* event) override;
  void contextMenuEvent(QContextMenuEvent* event) override;
  void selectionChanged(const QItemSelection& selected, const QItemSelection& deselected) override;
  // A board is always chosen: Ctrl with a click or Space does not take the highlight away.
  QItemSelectionModel::SelectionFlags selectionCommand(const QModelIndex& index,
                                                       const QEvent* event) const override;

 private:
  std::vector<NodeList> ReadNodes();
  void Highlight(const QModelIndex& item);
  void Choose(const QModelIndex& item);
  void OpenMenuAtHighlight();
  void OpenMenu(const QModelIndex& at, const QPoint& position);

  BoardLink& link_;
  DeviceTreeModel model_;
  NodeReader read_nodes_;
  QPersistentModelIndex chosen_;  // what the highlight goes back to after a refused choice
  bool highlighting_ = false;
};

}  // namespace quillon
