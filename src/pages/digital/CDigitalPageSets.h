// SPDX-License-Identifier: MIT
#pragma once

#include "pages/common/CPageSet.h"

namespace quillon {

// The digital ports controller: eight ports.
class CDigitalPortsPageSet : public CPageSet {
  Q_OBJECT

 public:
  explicit CDigitalPortsPageSet(PageContext context, QWidget* parent = nullptr);
};

// Its second variant: banks of 32 inputs.
class CDigitalInputBankPageSet : public CPageSet {
  Q_OBJECT

 public:
  explicit CDigitalInputBankPageSet(PageContext context, QWidget* parent = nullptr);
};

}  // namespace quillon
