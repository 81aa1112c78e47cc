// SPDX-License-Identifier: MIT
#pragma once

#include "pages/common/CSettingsPage.h"

namespace quillon {

// "GLCD Mode" of a port: the graphic display at it.
class CGlcdPage final : public CSettingsPage {
  Q_OBJECT

 public:
  CGlcdPage(PageContext context, const Page& page, QWidget* parent = nullptr);
};

}  // namespace quillon
