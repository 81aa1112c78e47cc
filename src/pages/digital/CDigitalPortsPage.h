// SPDX-License-Identifier: MIT
#pragma once

#include "pages/common/CSettingsPage.h"

namespace quillon {

// "Digital Ports" of the digital ports controller: 8 ports, one of them with a rotary encoder at
// most, and the master switch.
class CDigitalPortsPage final : public CSettingsPage {
  Q_OBJECT

 public:
  CDigitalPortsPage(PageContext context, const Page& page, QWidget* parent = nullptr);
};

}  // namespace quillon
