// SPDX-License-Identifier: MIT
#pragma once

#include <QDialog>
#include <array>
#include <cstdint>
#include <functional>

#include "kvusb/HidPacket.h"

class QLabel;
class QRadioButton;

namespace quillon {

class CNumberBox;

enum class CalibrationStatus {
  kNotShown = -1,
  kSucceeded = 1,   // the last exchange was answered with its echo
  kCancelling = 2,  // until the cancel command is answered
  kFailed = 3,      // the last exchange was not
};

// "Axis Calibrate": the board measures the ends and the center of an axis while this dialog is
// open, or the user gives them. However it closes, the board gets exactly one closing command.
class CAxisCalibrateDlg : public QDialog {
  Q_OBJECT

 public:
  // Sends a request to the board that is calibrated and puts the answer in its place. False unless
  // the answer echoes the command.
  using Exchange = std::function<bool(HidPacket&)>;

  // `axis` is its code, 0 to 7.
  CAxisCalibrateDlg(int axis, Exchange exchange, QWidget* parent);

  // Opens the dialog modally and returns how its last exchange ended. The caller holds the gate.
  CalibrationStatus Run();

  // OK accepts, everything else cancels. The dialog closes even if the closing command fails.
  void done(int result) override;

 protected:
  void showEvent(QShowEvent* event) override;

 private:
  QWidget* BuildModes();
  QWidget* BuildValues();
  QWidget* BuildButtons();

  void ShowDefaults();
  void SetManual(bool manual);
  void Measure();
  void Close(bool accept);
  bool Ask(std::uint8_t command, HidPacket& packet);

  int axis_;
  Exchange exchange_;
  CalibrationStatus status_ = CalibrationStatus::kNotShown;
  bool awaits_closing_command_ = false;
  QRadioButton* automatic_ = nullptr;
  QRadioButton* manual_ = nullptr;
  QLabel* instruction_ = nullptr;
  QLabel* measured_ = nullptr;
  std::array<CNumberBox*, 3> values_{};  // in the order of the calibration's values
};

}  // namespace quillon
