// SPDX-License-Identifier: MIT
#include "pages/nodes/CNodePortPageSet.h"

namespace quillon {

CNodePortPageSet::CNodePortPageSet(PageContext context, QWidget* parent)
    : CTabSet(context, parent) {
  for (const QString& title : {tr("Node Information"), tr("I/O Port"), tr("Direct Output Mode"),
                               tr("GLCD Mode"), tr("SPI / DAC Mode")})
    AddTab("tab-node", title);
}

}  // namespace quillon
