// SPDX-License-Identifier: MIT
#pragma once

#include <QWidget>
#include <optional>

#include "devlink/Products.h"
#include "firmware/NodeStatus.h"
#include "pages/common/PageContext.h"

namespace quillon {

class CDeviceConfigGroup;
class CFlashGroup;

// The first tab of every family: the report on the board, its serial number and restart (the Device
// Configuration group), and its firmware (the Flash Update group). What one group needs to know of
// the other passes through here.
class CDeviceConfigPage : public QWidget {
  Q_OBJECT

 public:
  CDeviceConfigPage(PageContext context, BoardFamily family, QWidget* parent = nullptr);

  // Rebuilds the report on the current board and enables the page's controls accordingly; without
  // boards, shows the empty form. Shows a message when the firmware is newer than this program
  // knows. `nodes` is what the board has just answered when it was asked for its nodes, if it was.
  void ShowDeviceInfo(std::optional<NodeStatusAnswer> nodes = std::nullopt);
  // Renews the report after the records of the board's nodes have changed, and nothing else.
  // `answer` is the board's, if it was just asked.
  void FollowNodes(std::optional<NodeStatusAnswer> answer = std::nullopt);

 Q_SIGNALS:
  // What the other tabs of the family depend on. Not sent without boards.
  void BoardReported(bool flash_mode_active, bool firmware_suits);
  // The same after the board's nodes have changed.
  void NodesFollowed(bool flash_mode_active, bool firmware_suits);
  // The "Refresh" button: close all boards and detect them again.
  void RefreshRequested();

 protected:
  void showEvent(QShowEvent* event) override;
  void dragEnterEvent(QDragEnterEvent* event) override;
  void dropEvent(QDropEvent* event) override;

 private:
  void ShowControls();

  PageContext context_;
  CDeviceConfigGroup* device_group_;
  CFlashGroup* flash_group_;
};

}  // namespace quillon
