// SPDX-License-Identifier: MIT
#pragma once

#include <array>

#include "pages/common/CSettingsPage.h"
#include "settings/TweakBlock.h"

class QCheckBox;
class QComboBox;
class QGridLayout;

namespace quillon {

class CNumberBox;
enum class CalibrationStatus;

// "Axis Tweaking" of the joystick controllers: whether each of the eight axes is active, its trims
// and dead zone, the axis that it is combined with, and its calibration.
class CAxisTweakPage : public CSettingsPage {
  Q_OBJECT

 public:
  explicit CAxisTweakPage(PageContext context, QWidget* parent = nullptr);

 protected:
  bool RetrieveRoutine() override;
  bool UpdateRoutine() override;
  void DefaultsRoutine() override;

  // Shows how the calibration of an axis ended: the Error lamp, and a message where it failed.
  void ReportCalibration(int axis, CalibrationStatus status);

 private:
  struct Line {
    QCheckBox* active;
    std::array<CNumberBox*, 3> percents;  // trim min, dead zone, trim max
    QComboBox* combine;
    QCheckBox* calibrate;  // works as a push button
  };

  void AddCaptions(QGridLayout* grid);
  void AddLine(QGridLayout* grid, int axis);
  void Calibrate(int axis);

  tweak::Block block_;
  std::array<Line, tweak::Block::kRecords> lines_{};
};

}  // namespace quillon
