// SPDX-License-Identifier: MIT
#include "pages/digital/CDigitalPageSets.h"

namespace quillon {

CDigitalPortsPageSet::CDigitalPortsPageSet(PageContext context, QWidget* parent)
    : CPageSet(context, BoardFamily::kDigitalPorts, parent) {
  AddTab("tab-ports", tr("Digital Ports"));
}

CDigitalInputBankPageSet::CDigitalInputBankPageSet(PageContext context, QWidget* parent)
    : CPageSet(context, BoardFamily::kInputBanks, parent) {
  AddTab("tab-ports", tr("Digital Ports"));
}

}  // namespace quillon
