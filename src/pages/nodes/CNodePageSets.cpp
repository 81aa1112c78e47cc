// SPDX-License-Identifier: MIT
#include "pages/nodes/CNodePageSets.h"

#include "pages/common/Vendor.h"
#include "res/Icons.h"

namespace quillon {

CNodeSystemPageSet::CNodeSystemPageSet(PageContext context, QWidget* parent)
    : CPageSet(context, BoardFamily::kNodeSystem, parent) {
  AddPage("tab-node", tr("Node Configuration"));
  AddPage("tab-card", tr("Expansion Card Configuration"));
  AddPage("tab-ports", tr("I/O Ports"));
}

CNodePortPageSet::CNodePortPageSet(QWidget* parent) : QTabWidget(parent) {
  for (const QString& title : {tr("Node Information"), tr("I/O Port"), tr("Direct Output Mode"),
                               tr("GLCD Mode"), tr("SPI / DAC Mode")}) {
    const int index = addTab(new QWidget, Icon("tab-node"), title);
    setTabEnabled(index, false);
    setTabToolTip(index, LaterVersion());
  }
}

}  // namespace quillon
