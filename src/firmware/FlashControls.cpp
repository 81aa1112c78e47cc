// SPDX-License-Identifier: MIT
#include "firmware/FlashControls.h"

namespace quillon {
namespace {

void EnableConfiguration(FlashControls& controls) {
  controls.refresh = controls.flash = controls.device = true;
  controls.serial = controls.set = controls.reboot = true;
}

void EnableUpdate(FlashControls& controls, bool enabled) {
  controls.program = controls.execute = controls.load = enabled;
}

FlashControls Reported(const FlashPageState& state) {
  FlashControls controls;
  EnableConfiguration(controls);
  if (state.flash_mode_active) {
    EnableUpdate(controls, true);
    controls.flash = false;
    controls.device = state.firmware_present && !state.last_run_failed;
    controls.program = state.file_loaded && !state.file_programmed;
    controls.execute =
        state.file_programmed && !state.reported_without_file && !state.last_run_failed;
  } else {
    controls.device = false;
  }
  if (state.newer_node_system) {
    EnableUpdate(controls, false);
    controls.load = true;
  }
  return controls;
}

FlashControls Stopped() {
  FlashControls controls;
  EnableConfiguration(controls);
  EnableUpdate(controls, true);
  controls.flash = controls.device = controls.execute = false;
  return controls;
}

// The board's report may be older than the run, so what it says of its firmware does not count.
FlashControls Completed() {
  FlashControls controls;
  EnableConfiguration(controls);
  EnableUpdate(controls, true);
  controls.flash = controls.program = false;
  return controls;
}

FlashControls AtMoment(const FlashPageState& state) {
  switch (state.moment) {
    case FlashMoment::kRunning:
      return {.program = true};
    case FlashMoment::kStopped:
      return Stopped();
    case FlashMoment::kCompleted:
      return Completed();
    case FlashMoment::kReported:
      break;
  }
  return state.device_present ? Reported(state) : FlashControls{.refresh = true};
}

}  // namespace

FlashControls FlashControlsFor(const FlashPageState& state) {
  FlashControls controls = AtMoment(state);
  // Intended: cancelling "Load..." or a file that is refused leaves nothing to program. The image
  // of the file before is still there, but it is not what the user asked for last.
  const bool nothing_to_program = !state.file_loaded;
  if (nothing_to_program) controls.program = false;
  // A loaded file can be programmed whatever came before, and after a failed run nothing else can
  // be done with the board.
  if (state.file_loaded && state.flash_mode_active && state.device_present) {
    controls.program = !state.file_programmed;
    if (state.last_run_failed) controls.execute = controls.flash = controls.device = false;
  }
  return controls;
}

}  // namespace quillon
