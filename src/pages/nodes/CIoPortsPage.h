// SPDX-License-Identifier: MIT
#pragma once

#include "pages/common/CSettingsPage.h"

namespace quillon {

// "I/O Ports" of the node I/O system: whether each port is on, which way it works and what it
// drives. Ports of nodes that are not checked in the list of nodes are neither read nor written;
// the active ones are, until the user clears their boxes.
class CIoPortsPage : public CSettingsPage {
  Q_OBJECT

 public:
  CIoPortsPage(PageContext context, const Page& page, QWidget* parent = nullptr)
      : CIoPortsPage(context, page, tr("I/O Ports Configuration"), parent) {}

 protected:
  CIoPortsPage(PageContext context, const Page& page, const QString& title, QWidget* parent);

  bool Skips(NodePort port) const override;
  QString LeftOut() const override;
};

}  // namespace quillon
