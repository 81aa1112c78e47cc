// SPDX-License-Identifier: MIT
#pragma once

#include "pages/common/CSettingsPage.h"

namespace quillon {

// "Digital Channels" of the scan matrix controller: 64 inputs, and what each pair of them does with
// a rotary encoder or a push-pull switch.
class CScanMatrixChannelsPage final : public CSettingsPage {
  Q_OBJECT

 public:
  CScanMatrixChannelsPage(PageContext context, const Page& page, QWidget* parent = nullptr);

 protected:
  void OnShown() override;

 private:
  CSettingsGrid* grid_;
  int encoder_;
};

}  // namespace quillon
