// SPDX-License-Identifier: MIT
#pragma once

#include "pages/common/CPageSet.h"

namespace quillon {

// The three joystick-style families, which share page classes and differ in which they have.
enum class JoystickFamily { kFull, kSmall, kScanMatrix };

class CJoystickPageSet : public CPageSet {
  Q_OBJECT

 public:
  CJoystickPageSet(PageContext context, JoystickFamily family, QWidget* parent = nullptr);
};

}  // namespace quillon
