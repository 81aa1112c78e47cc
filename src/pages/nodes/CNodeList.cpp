// SPDX-License-Identifier: MIT
#include "pages/nodes/CNodeList.h"

#include "firmware/NodeStatus.h"

namespace quillon {
namespace {

constexpr QRgb kGrey = qRgb(0xE1, 0xE1, 0xE1);
constexpr QRgb kPale = qRgb(0xEB, 0xEB, 0xEB);
constexpr QRgb kRed = qRgb(0xFF, 0xC8, 0xC8);
constexpr QRgb kGreen = qRgb(0xC8, 0xFF, 0xC8);

QRgb ColourOf(const NodeRecord& node) {
  if (!node.IsActive()) return kGrey;
  return node.UpdateRequired() ? kRed : kPale;
}

QRgb ColourOf(NodeEnd end) {
  switch (end) {
    case NodeEnd::kSkipped:
      return kGrey;
    case NodeEnd::kCompleted:
      return kGreen;
    case NodeEnd::kAborted:
    case NodeEnd::kFailed:
      break;
  }
  return kRed;
}

QString ToolTipOf(int column) {
  switch (column) {
    case CNodeList::kNode:
      return CNodeList::tr(
          "Checked nodes are updated; the ports of others are left out of Retrieve and Update. A "
          "click or Space checks a row.");
    case CNodeList::kStatus:
      return CNodeList::tr("Whether the node answers.");
    case CNodeList::kLoaderVersion:
      return CNodeList::tr("Version of the node's firmware loader.");
    case CNodeList::kFlashVersion:
      return CNodeList::tr("Version of the node's firmware. Without any it is N/A.");
    case CNodeList::kUpdateStatus:
      return CNodeList::tr("How the node's firmware compares with what Quillon works with.");
    default:
      return CNodeList::tr("How long the update of the node took, in minutes and seconds.");
  }
}

}  // namespace

CNodeList::CNodeList(QWidget* parent)
    : CCheckList({tr("Node"), tr("Status"), tr("Loader Ver."), tr("Flash Ver."),
                  tr("Node Update Status"), tr("Time")},
                 parent) {
  setAccessibleName(tr("Nodes"));
  SetToolTips([](int /*row*/, int column) { return ToolTipOf(column - 1); });
  ShowNone();
}

void CNodeList::ShowNone() {
  SetRows(0);
  hideColumn(kTime);
  FitColumns();
}

void CNodeList::ShowNodes(const NodeRecords& nodes, const NodeSelection& checked) {
  // The row that the user is at stays where it can.
  if (RowCount() == 0) SetRows(static_cast<int>(nodes.size()));
  hideColumn(kTime);
  for (int row = 0; row < RowCount(); ++row) {
    const auto index = static_cast<std::size_t>(row);
    const NodeRecord& node = nodes[index];
    const NodeRowTexts texts = RowTextsOf(node, index);
    Write(row, kNode, QString::fromStdString(texts.node));
    Write(row, kStatus, QString::fromStdString(texts.status));
    Write(row, kLoaderVersion, QString::fromStdString(texts.loader_version));
    Write(row, kFlashVersion, QString::fromStdString(texts.flash_version));
    Write(row, kUpdateStatus, QString::fromStdString(texts.update_status));
    Write(row, kTime, {});
    Check(row, checked[index]);
    Paint(row, ColourOf(node));
  }
  FitColumns();
  Redraw();
}

void CNodeList::ShowTime(std::size_t node, const QString& time) {
  if (isColumnHidden(kTime)) {
    showColumn(kTime);
    FitColumns();
  }
  Write(static_cast<int>(node), kTime, time);
}

void CNodeList::ShowPercent(std::size_t node, int percent, const QString& time) {
  ShowProgress(static_cast<int>(node), kUpdateStatus, percent);
  ShowTime(node, time);
  Redraw();
}

void CNodeList::ShowVersion(std::size_t node, VersionWord version) {
  Write(static_cast<int>(node), kFlashVersion, QString::fromStdString(VersionText(version)));
}

void CNodeList::ShowEnd(std::size_t node, NodeEnd end, const QString& text, const QString& time) {
  Write(static_cast<int>(node), kUpdateStatus, text);
  ShowTime(node, time);
  Paint(static_cast<int>(node), ColourOf(end));
  FitColumns();
  Redraw();
  // The next node's erase keeps the event loop waiting.
  viewport()->repaint();
}

}  // namespace quillon
