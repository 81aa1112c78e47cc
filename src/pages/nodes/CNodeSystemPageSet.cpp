// SPDX-License-Identifier: MIT
#include "pages/nodes/CNodeSystemPageSet.h"

namespace quillon {

CNodeSystemPageSet::CNodeSystemPageSet(PageContext context, QWidget* parent)
    : CPageSet(context, BoardFamily::kNodeSystem, parent) {
  AddTab("tab-node", tr("Node Configuration"));
  AddTab("tab-card", tr("Expansion Card Configuration"));
  AddTab("tab-ports", tr("I/O Ports"));
}

}  // namespace quillon
