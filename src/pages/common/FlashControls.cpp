// SPDX-License-Identifier: MIT
#include "pages/common/FlashControls.h"

namespace quillon {
namespace {

using enum FlashControl;

FlashControls Reported(const FlashPageState& state) {
  FlashControls controls{kRefresh, kSerial, kSet, kReboot};
  if (state.flash_mode_active) {
    controls.Set(kDevice, state.firmware_present && !state.last_run_failed);
    controls.Set(kExecute, state.file_programmed && !state.reported_without_file &&
                               !state.last_run_failed && !state.newer_node_system);
  } else {
    controls.Set(kFlash, true);
  }
  controls.Set(kLoad, state.flash_mode_active || state.newer_node_system);
  return controls;
}

FlashControls AtMoment(const FlashPageState& state) {
  switch (state.moment) {
    case FlashMoment::kRunning:
      return {kProgram};
    case FlashMoment::kStopped:
      return {kRefresh, kSerial, kSet, kReboot, kProgram, kLoad};
    case FlashMoment::kCompleted:
      // The board's report may be older than the run, so what it says of its firmware does not
      // count.
      return {kRefresh, kDevice, kSerial, kSet, kReboot, kExecute, kLoad};
    case FlashMoment::kReported:
      break;
  }
  return state.device_present ? Reported(state) : FlashControls{kRefresh};
}

}  // namespace

FlashControls FlashControlsFor(const FlashPageState& state) {
  FlashControls controls = AtMoment(state);
  // Intended: cancelling "Load..." or a file that is refused leaves nothing to program. The image
  // of the file before is still there, but it is not what the user asked for last.
  const bool nothing_to_program = !state.file_loaded;
  if (nothing_to_program) controls.Set(kProgram, false);
  // A loaded file can be programmed whatever came before, and after a failed run nothing else can
  // be done with the board.
  if (state.file_loaded && state.flash_mode_active && state.device_present) {
    controls.Set(kProgram, !state.file_programmed);
    if (state.last_run_failed) {
      for (const FlashControl other : {kExecute, kFlash, kDevice}) controls.Set(other, false);
    }
  }
  return controls;
}

}  // namespace quillon
