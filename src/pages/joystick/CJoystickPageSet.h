// SPDX-License-Identifier: MIT
#pragma once

#include "pages/common/CPageSet.h"

namespace quillon {

// The three joystick-style families, which share page classes and differ in which they have.
class CJoystickPageSet : public CPageSet {
  Q_OBJECT

 public:
  // `family` is kJoystick, kSmallJoystick or kScanMatrix.
  CJoystickPageSet(PageContext context, BoardFamily family, QWidget* parent = nullptr);
};

}  // namespace quillon
