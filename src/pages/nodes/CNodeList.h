// SPDX-License-Identifier: MIT
#pragma once

#include "devlink/NodeRecord.h"
#include "firmware/NodeUpdate.h"
#include "widgets/CCheckList.h"

namespace quillon {

// A board's nodes with the state of their firmware, one row a node. What is checked is to be
// updated.
class CNodeList : public CCheckList {
  Q_OBJECT

 public:
  enum Column { kNode, kStatus, kLoaderVersion, kFlashVersion, kUpdateStatus, kTime };

  explicit CNodeList(QWidget* parent = nullptr);

  // Forgets what a run said of the nodes.
  void ShowNodes(const NodeRecords& nodes, const NodeSelection& checked);
  // No board, no rows.
  void ShowNone();

  // During a run; rows count as nodes do, from 0.
  void ShowPercent(std::size_t node, int percent, const QString& time);
  void ShowVersion(std::size_t node, VersionWord version);
  void ShowEnd(std::size_t node, NodeEnd end, const QString& text, const QString& time);

 private:
  void ShowTime(std::size_t node, const QString& time);
};

}  // namespace quillon
