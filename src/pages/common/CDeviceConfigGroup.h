// SPDX-License-Identifier: MIT
#pragma once

#include <QGroupBox>
#include <optional>

#include "devlink/Products.h"
#include "firmware/DeviceReport.h"
#include "firmware/RestartCommand.h"
#include "pages/common/FlashTips.h"
#include "pages/common/PageContext.h"

class QBoxLayout;
class QLineEdit;
class QPushButton;

namespace quillon {

class CReportText;

// The "Device Configuration" group: the report on the current board, its serial number and its
// restart.
class CDeviceConfigGroup : public QGroupBox {
  Q_OBJECT

 public:
  CDeviceConfigGroup(PageContext context, BoardFamily family, QWidget* parent = nullptr);

  // Rebuilds the report on the current board. A board of the node I/O system is asked for its
  // nodes, unless `nodes` says what it has just answered. Without boards, shows the empty form and
  // returns nothing. The caller may hold the gate.
  std::optional<DeviceReport> ShowBoard(std::optional<NodeStatusAnswer> nodes = std::nullopt);
  // Renews the text of the report after the records of the board's nodes have changed. Asks no
  // board. `answer` is the board's, if it was just asked. Nothing without boards.
  std::optional<DeviceReport> FollowNodes(std::optional<NodeStatusAnswer> answer);

  // Enables the controls as the state says, with tool tips that say why.
  void ShowControls(const FlashPageState& state, const FlashBoards& boards);

  // Restarts the current board as this button does, be it of this group or not. Does nothing while
  // something else holds the gate.
  void Restart(RestartButton button);

 Q_SIGNALS:
  // The "Refresh" button: close all boards and detect them again.
  void RefreshRequested();

 private:
  std::optional<NodeFindings> FindNodes(std::optional<NodeStatusAnswer> known);
  void AddSerialRow(QBoxLayout& column);
  void ConnectButtons();
  void OnSetSerial();

  PageContext context_;
  NodeStatusAnswer answer_ = NodeStatusAnswer::kNone;  // of the last report
  const Product& product_;                             // any of the family
  CReportText* report_;
  QPushButton* refresh_button_ = nullptr;
  QPushButton* flash_button_ = nullptr;
  QPushButton* device_button_ = nullptr;
  QLineEdit* serial_box_ = nullptr;
  QPushButton* set_button_ = nullptr;
  QPushButton* reboot_button_ = nullptr;
};

}  // namespace quillon
