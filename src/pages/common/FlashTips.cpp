// SPDX-License-Identifier: MIT
#include "pages/common/FlashTips.h"

namespace quillon {
namespace {

const char* Purpose(FlashControl control, bool running) {
  switch (control) {
    case FlashControl::kRefresh:
      return "Closes all boards and looks for them again.";
    case FlashControl::kFlash:
      return "Restarts the board in its firmware loader.";
    case FlashControl::kDevice:
      return "Restarts the board in its firmware.";
    case FlashControl::kSerial:
      return "Three digits that tell boards of one kind apart, 000 to 999.";
    case FlashControl::kSet:
      return "Gives the board this serial number, which it takes at its next start.";
    case FlashControl::kReboot:
      return "Restarts the board in the mode it is in.";
    case FlashControl::kProgram:
      return running ? "Stops before the next record. The board stays in Flash Mode and can be "
                       "programmed again."
                     : "Erases the board's firmware and writes the loaded file.";
    case FlashControl::kExecute:
      return "Restarts the board with its new firmware.";
    case FlashControl::kLoad:
      return "Chooses the KVX firmware file to write. A file can be dropped on this page, too.";
  }
  return "";
}

const char* WhyDisabled(FlashControl control, const FlashPageState& state) {
  if (!state.device_present) return "Needs a board.";
  if (state.moment == FlashMoment::kRunning) return "Not while the board is programmed.";
  const bool of_update = control == FlashControl::kProgram || control == FlashControl::kExecute ||
                         control == FlashControl::kLoad;
  if (of_update && !state.flash_mode_active) return "Only in Flash Mode.";
  switch (control) {
    case FlashControl::kFlash:
      return "The board is in Flash Mode already.";
    case FlashControl::kDevice:
      if (!state.flash_mode_active) return "The board is in Device Mode already.";
      return state.last_run_failed || state.moment == FlashMoment::kStopped
                 ? "The board was not programmed to the end: program it again."
                 : "The board holds no valid firmware: program it first.";
    case FlashControl::kProgram:
      return state.file_loaded ? "The board holds the loaded file already." : "Load a file first.";
    case FlashControl::kExecute:
      return "Program the board first.";
    default:
      return "";
  }
}

}  // namespace

QString FlashTip(FlashControl control, bool enabled, const FlashPageState& state) {
  const bool running = state.moment == FlashMoment::kRunning;
  return QString::fromUtf8(enabled ? Purpose(control, running) : WhyDisabled(control, state));
}

}  // namespace quillon
