// SPDX-License-Identifier: MIT
#pragma once

#include "pages/common/CSettingsPage.h"

namespace quillon {

// "HAT Channels" of the joystick controllers, with the damping of outputs where the board has any.
class CHatChannelsPage final : public CSettingsPage {
  Q_OBJECT

 public:
  CHatChannelsPage(PageContext context, const Page& page, QWidget* parent = nullptr);
};

}  // namespace quillon
