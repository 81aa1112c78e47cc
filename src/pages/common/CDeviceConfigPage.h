// SPDX-License-Identifier: MIT
#pragma once

#include <QWidget>

#include "pages/common/PageContext.h"

class QBoxLayout;
class QLabel;
class QLineEdit;
class QPlainTextEdit;
class QProgressBar;
class QPushButton;

namespace quillon {

// The first tab of every family: the report on the board, its serial number and restart (the Device
// Configuration group), and its firmware (the Flash Update group).
class CDeviceConfigPage : public QWidget {
  Q_OBJECT

 public:
  // `device_mode` is the device type that counts as Device Mode in the family.
  CDeviceConfigPage(PageContext context, std::uint32_t device_mode, QWidget* parent);

  // Rebuilds the report on the current board and sets the page's controls by it; without boards,
  // the empty form. Tells of a firmware that is newer than this program knows.
  void ShowDeviceInfo();

 Q_SIGNALS:
  // What the other tabs of the family depend on. Not sent without boards.
  void BoardReported(bool flash_mode_active, bool firmware_suits);
  // The "Refresh" button: close all boards and detect them again.
  void RefreshRequested();

 private:
  QWidget* BuildReportGroup();
  QWidget* BuildSerialRow();
  QWidget* BuildFlashGroup();

  PageContext context_;
  std::uint32_t device_mode_;
  QPlainTextEdit* report_ = nullptr;
  QPushButton* refresh_ = nullptr;
  QPushButton* flash_ = nullptr;
  QPushButton* device_ = nullptr;
  QLineEdit* serial_ = nullptr;
  QPushButton* set_ = nullptr;
  QPushButton* reboot_ = nullptr;
  QPlainTextEdit* log_ = nullptr;
  QLabel* file_ = nullptr;
  QProgressBar* progress_ = nullptr;
  QPushButton* program_ = nullptr;
  QPushButton* execute_ = nullptr;
  QPushButton* load_ = nullptr;
};

}  // namespace quillon
