// SPDX-License-Identifier: MIT
#include "pages/nodes/CNodePageSets.h"

namespace quillon {

CNodeSystemPageSet::CNodeSystemPageSet(PageContext context, QWidget* parent)
    : CPageSet(context, BoardFamily::kNodeSystem, parent) {
  AddTab("tab-node", tr("Node Configuration"));
  AddTab("tab-card", tr("Expansion Card Configuration"));
  AddTab("tab-ports", tr("I/O Ports"));
}

CSpiControllerPageSet::CSpiControllerPageSet(PageContext context, QWidget* parent)
    : CPageSet(context, BoardFamily::kSpi, parent) {
  AddTab("tab-spi", tr("SPI Configuration"));
}

CNodePortPageSet::CNodePortPageSet(PageContext context, QWidget* parent)
    : CTabSet(context, parent) {
  for (const QString& title : {tr("Node Information"), tr("I/O Port"), tr("Direct Output Mode"),
                               tr("GLCD Mode"), tr("SPI / DAC Mode")})
    AddTab("tab-node", title);
}

}  // namespace quillon
