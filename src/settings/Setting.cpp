// SPDX-License-Identifier: MIT
#include "settings/Setting.h"

#include "settings/JoystickSettings.h"

namespace quillon {

std::span<const Page> PagesOf(BoardFamily family) {
  switch (family) {
    case BoardFamily::kJoystick:
      return JoystickPages();
    case BoardFamily::kSmallJoystick:
      return SmallJoystickPages();
    case BoardFamily::kScanMatrix:
      return ScanMatrixPages();
    default:
      return {};
  }
}

}  // namespace quillon
