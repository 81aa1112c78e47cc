// SPDX-License-Identifier: MIT
#include "pages/nodes/CSpiDacPage.h"

#include <QBoxLayout>

namespace quillon {

CSpiDacPage::CSpiDacPage(PageContext context, const Page& page, QWidget* parent)
    : CSettingsPage(context, page, tr("SPI / DAC Configuration"), parent) {
  AddGrid(Body(), tr("SPI and DAC channels"),
          {.columns = {{"damping", CellKind::kCombo}, {"bits", CellKind::kCombo}},
           .tables = {{"channel"}},
           .ground = kPlainGround});
}

}  // namespace quillon
