// SPDX-License-Identifier: MIT
#pragma once

#include "pages/common/CSettingsPage.h"

namespace quillon {

// "SPI Configuration" of the SPI controller: damping and the level of the chip-select line for each
// of 8 channels.
class CSpiConfigPage final : public CSettingsPage {
  Q_OBJECT

 public:
  CSpiConfigPage(PageContext context, const Page& page, QWidget* parent = nullptr);
};

}  // namespace quillon
