// SPDX-License-Identifier: MIT
#pragma once

#include "pages/nodes/CIoPortsPage.h"

namespace quillon {

// "I/O Port": the row of one port.
class CIoPortPage final : public CIoPortsPage {
  Q_OBJECT

 public:
  CIoPortPage(PageContext context, const Page& page, QWidget* parent = nullptr)
      : CIoPortsPage(context, page, tr("I/O Port Configuration"), parent) {}
};

}  // namespace quillon
