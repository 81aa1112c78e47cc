// SPDX-License-Identifier: MIT
#pragma once

#include "pages/common/CTabSet.h"

namespace quillon {

// One port of one node of the node I/O system. Not the set of a board: it has no report.
class CNodePortPageSet : public CTabSet {
  Q_OBJECT

 public:
  explicit CNodePortPageSet(PageContext context, QWidget* parent = nullptr);
};

}  // namespace quillon
