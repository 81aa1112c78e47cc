// SPDX-License-Identifier: MIT
#pragma once

#include <QString>

#include "firmware/FlashControls.h"

namespace quillon {

// The controls of a "Device Configuration" page, named as they are labelled.
enum class FlashControl {
  kRefresh,
  kFlash,
  kDevice,
  kSerial,
  kSet,
  kReboot,
  kProgram,
  kExecute,
  kLoad
};

// What a control does to the board, or why it is disabled in this state.
QString FlashTip(FlashControl control, bool enabled, const FlashPageState& state);

}  // namespace quillon
