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

}  // namespace quillon
