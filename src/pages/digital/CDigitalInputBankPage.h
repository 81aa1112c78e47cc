// SPDX-License-Identifier: MIT
#pragma once

#include "pages/common/CSettingsPage.h"

class QLabel;

namespace quillon {

// "Digital Ports" of the boards with banks of inputs: the 32 inputs of one bank, single or in pairs
// with a rotary encoder, the bank, and the master switch.
class CDigitalInputBankPage final : public CSettingsPage {
  Q_OBJECT

 public:
  CDigitalInputBankPage(PageContext context, const Page& page, QWidget* parent = nullptr);

 protected:
  bool Accepts(Cell cell, std::uint32_t code) override;
  void OnShown() override;

 private:
  const Cell bank_;
  QLabel* inputs_of_bank_;
};

}  // namespace quillon
