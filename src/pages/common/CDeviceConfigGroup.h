// SPDX-License-Identifier: MIT
#pragma once

#include <QGroupBox>
#include <cstdint>
#include <optional>

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
  // `device_mode` is the device type that counts as Device Mode in the family.
  CDeviceConfigGroup(PageContext context, std::uint32_t device_mode, QWidget* parent = nullptr);

  // Rebuilds the report on the current board. Without boards, shows the empty form and returns
  // nothing.
  std::optional<DeviceReport> ShowBoard();

  // Enables the controls as the state says, with tool tips that say why.
  void ShowControls(const FlashPageState& state, const FlashBoards& boards);

  // Restarts the current board as this button does, be it of this group or not. Does nothing while
  // something else holds the gate.
  void Restart(RestartButton button);

 Q_SIGNALS:
  // The "Refresh" button: close all boards and detect them again.
  void RefreshRequested();

 private:
  void AddSerialRow(QBoxLayout& column);
  void ConnectButtons();
  void OnSetSerial();

  PageContext context_;
  std::uint32_t device_mode_;
  CReportText* report_;
  QPushButton* refresh_button_ = nullptr;
  QPushButton* flash_button_ = nullptr;
  QPushButton* device_button_ = nullptr;
  QLineEdit* serial_box_ = nullptr;
  QPushButton* set_button_ = nullptr;
  QPushButton* reboot_button_ = nullptr;
};

}  // namespace quillon
