// SPDX-License-Identifier: MIT
#include "pages/nodes/CSpiControllerPageSet.h"

#include "pages/nodes/CSpiConfigPage.h"

namespace quillon {

CSpiControllerPageSet::CSpiControllerPageSet(PageContext context, QWidget* parent)
    : CPageSet(context, BoardFamily::kSpi, parent) {
  AddPage<CSpiConfigPage>("spi", "tab-spi");
}

}  // namespace quillon
