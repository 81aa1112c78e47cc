// SPDX-License-Identifier: MIT
#pragma once

#include <span>

#include "settings/Setting.h"

// The settings of the joystick-style controllers. The blocks are drawn in AnalogBlocks.h,
// DigitalBlock.h, HatBlock.h, TweakBlock.h, ExpansionBlock.h and ScanMatrixBlocks.h.
namespace quillon {

// By the code of the axis, 0 (X) to 7 (S2).
std::span<const std::string_view> AxisNames();

std::span<const Page> JoystickPages();
std::span<const Page> SmallJoystickPages();
std::span<const Page> ScanMatrixPages();

}  // namespace quillon
