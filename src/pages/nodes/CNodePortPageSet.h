// SPDX-License-Identifier: MIT
#pragma once

#include "pages/common/CTabSet.h"

namespace quillon {

// One port of one node of the node I/O system. Not the set of a board: it has no report.
class CNodePortPageSet : public CTabSet {
  Q_OBJECT

 public:
  explicit CNodePortPageSet(PageContext context, QWidget* parent = nullptr);

  // Makes the set one about this port of the current board, counted from 1 (A).
  void ShowPort(int port) { port_ = port; }

 private:
  int port_ = 0;
};

}  // namespace quillon
