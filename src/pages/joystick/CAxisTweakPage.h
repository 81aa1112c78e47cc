// SPDX-License-Identifier: MIT
#pragma once

#include "pages/common/CSettingsPage.h"

class QCheckBox;
class QGridLayout;

namespace quillon {

enum class CalibrationStatus;

// "Axis Tweaking" of the joystick controllers: whether each of the eight axes is active, its trims
// and dead zone, the axis that it is combined with, and its calibration.
class CAxisTweakPage : public CSettingsPage {
  Q_OBJECT

 public:
  CAxisTweakPage(PageContext context, const Page& page, QWidget* parent = nullptr);

 protected:
  // Shows how the calibration of an axis ended: the Error lamp, and a message where it failed.
  void ReportCalibration(int axis, CalibrationStatus status);

 private:
  void AddLine(QGridLayout* grid, int axis);
  void AddControl(QGridLayout* grid, Cell cell, QWidget* control, int column);
  void Calibrate(int axis, QCheckBox* box);
};

}  // namespace quillon
