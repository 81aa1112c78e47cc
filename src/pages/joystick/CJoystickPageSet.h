// SPDX-License-Identifier: MIT
#pragma once

#include "pages/common/CPageSet.h"

namespace quillon {

// The tabs of the three joystick-style families. They share page classes, but not every family has
// every page.
class CJoystickPageSet : public CPageSet {
  Q_OBJECT

 public:
  // `family` is kJoystick, kSmallJoystick or kScanMatrix.
  CJoystickPageSet(PageContext context, BoardFamily family, QWidget* parent = nullptr);
};

}  // namespace quillon
