// SPDX-License-Identifier: MIT
#pragma once

#include "pages/common/CSettingsPage.h"

namespace quillon {

// "Digital Channels" of the joystick controllers: 16 inputs, single or in pairs with a rotary
// encoder.
class CDigitalChannelsPage final : public CSettingsPage {
  Q_OBJECT

 public:
  CDigitalChannelsPage(PageContext context, const Page& page, QWidget* parent = nullptr);

 protected:
  bool Accepts(Cell cell, std::uint32_t code) override;
};

}  // namespace quillon
