// SPDX-License-Identifier: MIT
#pragma once

#include <bitset>
#include <cstddef>
#include <initializer_list>

namespace quillon {

// The controls of a "Device Configuration" page that are disabled at times, named as they are
// labelled. The first six are those of the Device Configuration group, kSerial the edit box; the
// others are those of the Flash Update group.
enum class FlashControl {
  kRefresh,
  kFlash,
  kDevice,
  kSerial,
  kSet,
  kReboot,
  kProgram,
  kExecute,
  kLoad,
};
inline constexpr std::size_t kFlashControls = 9;

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

// Some of the controls.
class FlashControls {
 public:
  FlashControls(std::initializer_list<FlashControl> controls) {
    for (const FlashControl control : controls) Set(control, true);
  }

  bool Has(FlashControl control) const { return bits_[static_cast<std::size_t>(control)]; }
  void Set(FlashControl control, bool has) { bits_[static_cast<std::size_t>(control)] = has; }

 private:
  std::bitset<kFlashControls> bits_;
};

// The controls that are enabled. Asked again whenever the page is shown or the state changes.
FlashControls FlashControlsFor(const FlashPageState& state);

}  // namespace quillon
