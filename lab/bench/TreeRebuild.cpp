// SPDX-License-Identifier: MIT
#include "bench/TreeRebuild.h"

#include <QTreeView>
#include <algorithm>
#include <cstdio>
#include <string_view>

#include "bench/BareViews.h"
#include "bench/Figures.h"
#include "bench/PaintedView.h"
#include "devlink/NoLibrary.h"
#include "devlink/Products.h"
#include "tree/CDeviceTreeCtrl.h"

namespace quillon::bench {
namespace {

constexpr std::size_t kBoards = 1000;
constexpr std::size_t kNodes = 12;
constexpr std::size_t kPorts = 2;
constexpr QSize kSize(420, 800);
constexpr double kGoal = 1.25;

void PutText(std::span<char> text, std::string_view value) {
  std::copy_n(value.begin(), std::min(value.size(), text.size() - 1), text.begin());
}

void FillTable(DeviceTable& table) {
  for (std::size_t i = 0; i < kBoards; ++i) {
    DeviceRecord& record = table.Free()[i];
    record.product_id = 0x0800;
    PutText(record.product_text, "Board of a certain kind");
    PutText(record.serial_number, "000");
  }
  table.Append(kBoards, KVUSB_TYPE_FIRMWARE_ID);
}

int Items(const QAbstractItemModel& model, const QModelIndex& parent = {}) {
  int items = model.rowCount(parent);
  for (int row = 0; row < model.rowCount(parent); ++row) {
    items += Items(model, model.index(row, 0, parent));
  }
  return items;
}

// The last port is laid out only when everything above it is open.
bool IsExpanded(const QTreeView& tree) {
  const QAbstractItemModel& model = *tree.model();
  QModelIndex last;
  while (model.rowCount(last) > 0) last = model.index(model.rowCount(last) - 1, 0, last);
  return tree.visualRect(last).isValid();
}

}  // namespace

bool MeasureTreeRebuild(int rounds) {
  NoLibrary library;
  BoardLink link(library);
  FillTable(link.table);
  CDeviceTreeCtrl ours(link);
  ours.SetNodeReader([] { return NodeList(kNodes, true); });
  ours.resize(kSize);
  ours.show();

  BareTreeModel model;
  QTreeView bare;
  bare.setModel(&model);
  bare.setHeaderHidden(true);
  bare.setUniformRowHeights(true);
  bare.resize(kSize);
  bare.show();

  PaintedView painted_ours(ours);
  PaintedView painted_bare(bare);
  const auto rebuild_ours = [&] {
    ours.Rebuild();
    ours.Run(DeviceTool::kExpandAll);
    painted_ours.Paint();
  };
  const auto rebuild_bare = [&] {
    model.Rebuild(kBoards, kNodes, kPorts);
    bare.expandAll();
    painted_bare.Paint();
  };
  const Pair times = MeasureInTurn(rounds, rebuild_ours, rebuild_bare);
  if (Items(*ours.model()) != Items(model) || !IsExpanded(ours) || !IsExpanded(bare) ||
      !painted_ours.Check() || !painted_bare.Check()) {
    std::fprintf(stderr, "the trees differ, are folded or not painted\n");
    return false;
  }
  PrintRatio("tree of 37,000 items: rebuild, expand, paint", "ms", times, kGoal);
  return true;
}

}  // namespace quillon::bench
