// SPDX-License-Identifier: MIT
#pragma once

namespace quillon {

// What last set the controls of a "Device Configuration" page.
enum class FlashMoment {
  kReported,   // the report was built, or no board is there
  kRunning,    // a flash update goes on; "Program" reads "Abort"
  kStopped,    // "Abort" was pressed, though the run may not have ended yet, or the run failed
  kCompleted,  // the run succeeded
};

// All that the enabled states of the page depend on.
struct FlashPageState {
  FlashMoment moment = FlashMoment::kReported;
  bool device_present = false;
  bool flash_mode_active = false;  // the board is not in its family's Device Mode
  bool firmware_present = false;   // the board's own word
  bool file_loaded = false;
  bool file_programmed = false;        // also when it has been unloaded since
  bool reported_without_file = false;  // no file was loaded when the report was built
  bool last_run_failed = false;        // or was aborted
  // A board of the node I/O system whose firmware is newer than this program knows.
  bool newer_node_system = false;
};

// Which controls are enabled.
struct FlashControls {
  // Device Configuration group; `serial` is the edit box.
  bool refresh = false, flash = false, device = false, serial = false, set = false, reboot = false;
  // Flash Update group.
  bool program = false, execute = false, load = false;

  bool operator==(const FlashControls&) const = default;
};

// Asked again whenever the page is shown or the state changes.
FlashControls FlashControlsFor(const FlashPageState& state);

}  // namespace quillon
