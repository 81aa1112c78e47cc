// SPDX-License-Identifier: MIT
#pragma once

#include "pages/common/CPageSet.h"

namespace quillon {

// The board of the node I/O system.
class CNodeSystemPageSet : public CPageSet {
  Q_OBJECT

 public:
  explicit CNodeSystemPageSet(PageContext context, QWidget* parent = nullptr);
};

// The SPI controller.
class CSpiControllerPageSet : public CPageSet {
  Q_OBJECT

 public:
  explicit CSpiControllerPageSet(PageContext context, QWidget* parent = nullptr);
};

// One port of one node of the node I/O system. Not the set of a board: it has no report, and all
// its tabs are still to come.
class CNodePortPageSet : public CTabSet {
  Q_OBJECT

 public:
  explicit CNodePortPageSet(PageContext context, QWidget* parent = nullptr);
};

}  // namespace quillon
