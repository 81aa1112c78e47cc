// SPDX-License-Identifier: MIT
#pragma once

#include "pages/common/CSettingsPage.h"

namespace quillon {

// "SPI / DAC Mode" of a port: damping and width of its channels.
class CSpiDacPage final : public CSettingsPage {
  Q_OBJECT

 public:
  CSpiDacPage(PageContext context, const Page& page, QWidget* parent = nullptr);
};

}  // namespace quillon
