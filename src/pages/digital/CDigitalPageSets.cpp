// SPDX-License-Identifier: MIT
#include "pages/digital/CDigitalPageSets.h"

#include "pages/digital/CDigitalInputBankPage.h"
#include "pages/digital/CDigitalPortsPage.h"

namespace quillon {

CDigitalPortsPageSet::CDigitalPortsPageSet(PageContext context, QWidget* parent)
    : CPageSet(context, BoardFamily::kDigitalPorts, parent) {
  AddPage<CDigitalPortsPage>("ports", "tab-ports");
}

CDigitalInputBankPageSet::CDigitalInputBankPageSet(PageContext context, QWidget* parent)
    : CPageSet(context, BoardFamily::kInputBanks, parent) {
  AddPage<CDigitalInputBankPage>("ports", "tab-ports");
}

}  // namespace quillon
