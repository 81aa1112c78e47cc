// SPDX-License-Identifier: MIT
#include "bench/views/TreeRebuild.h"

#include <QCoreApplication>
#include <QTreeView>
#include <algorithm>
#include <cstdio>
#include <string_view>

#include "bench/Figures.h"
#include "bench/views/BareViews.h"
#include "devlink/BoardFamily.h"
#include "tree/CDeviceTreeCtrl.h"

namespace quillon::bench {
namespace {

constexpr int kBoards = 1000;
constexpr int kNodes = 12;
constexpr int kPorts = 2;
constexpr QSize kSize(420, 800);
constexpr double kGoal = 1.25;

void PutText(std::span<char> text, std::string_view value) {
  std::copy_n(value.begin(), std::min(value.size(), text.size() - 1), text.begin());
}

void FillTable(DeviceTable& table) {
  for (std::size_t i = 0; i < kBoards; ++i) {
    DeviceRecord& record = table.Free()[i];
    record.product_id = kNodeSystemProduct;
    PutText(record.product_text, "Board of a certain kind");
    PutText(record.serial_number, "000");
  }
  table.Append(kBoards, KVUSB_TYPE_FIRMWARE_ID);
}

void Paint(QTreeView& tree) {
  QCoreApplication::sendPostedEvents();
  tree.viewport()->repaint();
}

int Items(const QAbstractItemModel& model, const QModelIndex& parent = {}) {
  int items = model.rowCount(parent);
  for (int row = 0; row < model.rowCount(parent); ++row) {
    items += Items(model, model.index(row, 0, parent));
  }
  return items;
}

}  // namespace

void MeasureTreeRebuild(int rounds) {
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

  const auto rebuild_ours = [&] {
    ours.Rebuild();
    ours.Run(DeviceTool::kExpandAll);
    Paint(ours);
  };
  const auto rebuild_bare = [&] {
    model.Rebuild(kBoards, kNodes, kPorts);
    bare.expandAll();
    Paint(bare);
  };
  const Pair times = MeasureInTurn(rounds, rebuild_ours, rebuild_bare);
  // Our root without boards has a placeholder.
  if (Items(*ours.model()) != model.Items() + 1) std::printf("The trees differ!\n");
  PrintRatio("tree of 37,000 items: rebuild, expand, paint", "ms", times, kGoal);
}

}  // namespace quillon::bench
