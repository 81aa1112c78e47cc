// SPDX-License-Identifier: MIT
#pragma once

#include "pages/common/CSettingsPage.h"

namespace quillon {

// "Direct Output Mode" of a port: which of its output lines are on.
class CDirectOutputPage final : public CSettingsPage {
  Q_OBJECT

 public:
  CDirectOutputPage(PageContext context, const Page& page, QWidget* parent = nullptr);
};

}  // namespace quillon
