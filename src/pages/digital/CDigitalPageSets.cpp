// SPDX-License-Identifier: MIT
#include "pages/digital/CDigitalPageSets.h"

namespace quillon {

CDigitalPortsPageSet::CDigitalPortsPageSet(PageContext context, QWidget* parent)
    : CPageSet(context, kDigitalPortsTraits, parent) {
  AddPage("tab-ports", tr("Digital Ports"));
}

CDigitalInputBankPageSet::CDigitalInputBankPageSet(PageContext context, QWidget* parent)
    : CPageSet(context, kInputBanksTraits, parent) {
  AddPage("tab-ports", tr("Digital Ports"));
}

}  // namespace quillon
