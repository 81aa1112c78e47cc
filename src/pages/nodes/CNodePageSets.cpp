// SPDX-License-Identifier: MIT
#include "pages/nodes/CNodePageSets.h"

namespace quillon {

CSpiControllerPageSet::CSpiControllerPageSet(PageContext context, QWidget* parent)
    : CPageSet(context, BoardFamily::kSpi, parent) {
  AddTab("tab-spi", tr("SPI Configuration"));
}

}  // namespace quillon
