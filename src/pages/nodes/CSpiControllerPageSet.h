// SPDX-License-Identifier: MIT
#pragma once

#include "pages/common/CPageSet.h"

namespace quillon {

// The SPI controller.
class CSpiControllerPageSet : public CPageSet {
  Q_OBJECT

 public:
  explicit CSpiControllerPageSet(PageContext context, QWidget* parent = nullptr);
};

}  // namespace quillon
