// SPDX-License-Identifier: MIT
#pragma once

#include <array>

#include "pages/common/CPageSet.h"

namespace quillon {

class CExpansionCardPage;
class CNodeConfigPage;

// The board of the node I/O system. The pages on its nodes and cards show what the table knows
// whenever there is a new report on the board, which has asked it.
class CNodeSystemPageSet : public CPageSet {
  Q_OBJECT

 public:
  explicit CNodeSystemPageSet(PageContext context, QWidget* parent = nullptr);

  // Asks the current board for its nodes and shows the answer on all pages. Without an answer they
  // stay as they are. The caller holds the gate.
  void RefreshNodes();

 private:
  QWidget* MakeNodeConfig();
  QWidget* MakeExpansionCards();

  void ShowNodes();
  void OnAddressed();
  void LockPages(bool locked);

  CNodeConfigPage* node_config_ = nullptr;  // null until it is first shown
  CExpansionCardPage* cards_ = nullptr;
  std::array<bool, 2> unlocked_{};  // which of the locked tabs were enabled
};

}  // namespace quillon
