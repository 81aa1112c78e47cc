// SPDX-License-Identifier: MIT
#include "pages/digital/CDigitalPageSets.h"

namespace quillon {

CDigitalPortsPageSet::CDigitalPortsPageSet(PageContext context, QWidget* parent)
    : CPageSet(context, BoardFamily::kDigitalPorts, parent) {
  AddPage("tab-ports", tr("Digital Ports"));
}

CDigitalInputBankPageSet::CDigitalInputBankPageSet(PageContext context, QWidget* parent)
    : CPageSet(context, BoardFamily::kInputBanks, parent) {
  AddPage("tab-ports", tr("Digital Ports"));
}

}  // namespace quillon
