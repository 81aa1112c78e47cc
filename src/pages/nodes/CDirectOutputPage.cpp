// SPDX-License-Identifier: MIT
#include "pages/nodes/CDirectOutputPage.h"

#include <QBoxLayout>

namespace quillon {

CDirectOutputPage::CDirectOutputPage(PageContext context, const Page& page, QWidget* parent)
    : CSettingsPage(context, page, tr("Direct Output Configuration"), parent) {
  AddGrid(Body(), tr("Direct outputs"),
          {.columns = {{"on", CellKind::kImageToggle}},
           .tables = {{"output"}},
           .ground = kPlainGround});
}

}  // namespace quillon
