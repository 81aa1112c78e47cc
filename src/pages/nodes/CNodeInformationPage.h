// SPDX-License-Identifier: MIT
#pragma once

#include <QWidget>

#include "devlink/DeviceTable.h"

namespace quillon {

class CReportText;

// "Node Information" of a port: the report on its node.
class CNodeInformationPage final : public QWidget {
  Q_OBJECT

 public:
  // The table outlives the page.
  explicit CNodeInformationPage(const DeviceTable& table, QWidget* parent = nullptr);

  // Shows what the current board last said of a node, counted from 0. Returns whether its firmware
  // suits, so that its ports can be set up.
  bool ShowNode(std::size_t node);

 private:
  const DeviceTable& table_;
  CReportText* report_;
};

}  // namespace quillon
