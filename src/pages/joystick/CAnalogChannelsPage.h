// SPDX-License-Identifier: MIT
#pragma once

#include "pages/common/CSettingsPage.h"

namespace quillon {

// "Analog Channels" of the joystick controllers: analog inputs and, on the full controller,
// absolute encoders and the incremental channel, and which joystick axes they drive.
class CAnalogChannelsPage final : public CSettingsPage {
  Q_OBJECT

 public:
  CAnalogChannelsPage(PageContext context, const Page& page, QWidget* parent = nullptr);
};

}  // namespace quillon
