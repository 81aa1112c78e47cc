// SPDX-License-Identifier: MIT
#pragma once

#include "pages/common/CPageSet.h"
#include "pages/nodes/CSpiControllerPageSet.h"  // IWYU pragma: export

namespace quillon {

// The board of the node I/O system.
class CNodeSystemPageSet : public CPageSet {
  Q_OBJECT

 public:
  explicit CNodeSystemPageSet(PageContext context, QWidget* parent = nullptr);
};

// One port of one node of the node I/O system. Not the set of a board: it has no report, and all
// its tabs are still to come.
class CNodePortPageSet : public QTabWidget {
  Q_OBJECT

 public:
  explicit CNodePortPageSet(QWidget* parent = nullptr);
};

}  // namespace quillon
