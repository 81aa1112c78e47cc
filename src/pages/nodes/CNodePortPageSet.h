// SPDX-License-Identifier: MIT
#pragma once

#include "pages/common/CTabSet.h"

namespace quillon {

class CNodeInformationPage;

// One port of one node of the node I/O system: the report on its node, then the settings of the
// port.
class CNodePortPageSet : public CTabSet {
  Q_OBJECT

 public:
  explicit CNodePortPageSet(PageContext context, QWidget* parent = nullptr);

  // Shows a port of the current board, counted from 1 (A) to 24 (X): opens at the report, which
  // decides whether the other tabs are enabled, and retrieves the port itself in either case. The
  // pages forget what they held of another port or board. Also for a caller that holds the gate.
  void ShowPort(int port);
  // Shows what the table knows now of the node of the port that was shown last. Asks no board.
  void FollowNode();

 private:
  CNodeInformationPage* information_;
  int port_ = 1;
};

}  // namespace quillon
