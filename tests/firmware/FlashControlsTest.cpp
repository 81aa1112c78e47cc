// SPDX-License-Identifier: MIT
#include <gmock/gmock.h>

#include <string>

#include "firmware/FlashControls.h"

namespace quillon {
namespace {

// The enabled controls as words, in the order of the page.
std::string Words(const FlashControls& controls) {
  std::string words;
  const auto add = [&](bool enabled, const char* word) {
    if (enabled) words += (words.empty() ? "" : " ") + std::string(word);
  };
  add(controls.refresh, "Refresh");
  add(controls.flash, "Flash");
  add(controls.device, "Device");
  add(controls.serial, "serial");
  add(controls.set, "Set");
  add(controls.reboot, "Reboot");
  add(controls.program, "Program");
  add(controls.execute, "Execute");
  add(controls.load, "Load");
  return words;
}

struct Case {
  const char* when;
  FlashPageState state;
  const char* enabled;
};

TEST(FlashControls, FollowTheStateOfBoardFileAndRun) {
  using enum FlashMoment;
  const Case cases[] = {
      {"no board", {.file_loaded = true}, "Refresh"},
      {"no board, but a file and a former failure",
       {.flash_mode_active = true, .file_loaded = true, .last_run_failed = true},
       "Refresh"},

      {"Device Mode",
       {.device_present = true, .firmware_present = true},
       "Refresh Flash serial Set Reboot"},
      {"Device Mode, a file loaded",
       {.device_present = true, .firmware_present = true, .file_loaded = true},
       "Refresh Flash serial Set Reboot"},
      {"Device Mode after a failed run",
       {.device_present = true, .file_loaded = true, .last_run_failed = true},
       "Refresh Flash serial Set Reboot"},

      {"Flash Mode",
       {.device_present = true, .flash_mode_active = true, .firmware_present = true},
       "Refresh Device serial Set Reboot Load"},
      {"Flash Mode without firmware",
       {.device_present = true, .flash_mode_active = true},
       "Refresh serial Set Reboot Load"},
      {"Flash Mode, a file loaded",
       {.device_present = true,
        .flash_mode_active = true,
        .firmware_present = true,
        .file_loaded = true},
       "Refresh Device serial Set Reboot Program Load"},
      {"Flash Mode, the file programmed",
       {.device_present = true,
        .flash_mode_active = true,
        .firmware_present = true,
        .file_loaded = true,
        .file_programmed = true},
       "Refresh Device serial Set Reboot Execute Load"},
      {"Flash Mode, the file programmed into another board",
       {.device_present = true,
        .flash_mode_active = true,
        .file_loaded = true,
        .file_programmed = true},
       "Refresh serial Set Reboot Execute Load"},
      {"Flash Mode, reported after a failed run",
       {.device_present = true,
        .flash_mode_active = true,
        .firmware_present = true,
        .file_loaded = true,
        .last_run_failed = true},
       "Refresh serial Set Reboot Program Load"},
      {"Flash Mode after a failed run, the file unloaded",
       {.device_present = true,
        .flash_mode_active = true,
        .firmware_present = true,
        .last_run_failed = true},
       "Refresh serial Set Reboot Load"},
      {"Flash Mode, programmed and failed",
       {.device_present = true,
        .flash_mode_active = true,
        .firmware_present = true,
        .file_loaded = true,
        .file_programmed = true,
        .last_run_failed = true},
       "Refresh serial Set Reboot Load"},

      {"newer node system in Device Mode",
       {.device_present = true, .firmware_present = true, .newer_node_system = true},
       "Refresh Flash serial Set Reboot Load"},
      {"newer node system in Flash Mode",
       {.device_present = true,
        .flash_mode_active = true,
        .firmware_present = true,
        .newer_node_system = true},
       "Refresh Device serial Set Reboot Load"},
      {"newer node system in Flash Mode, the file programmed",
       {.device_present = true,
        .flash_mode_active = true,
        .firmware_present = true,
        .file_loaded = true,
        .file_programmed = true,
        .newer_node_system = true},
       "Refresh Device serial Set Reboot Load"},

      {"running",
       {.moment = kRunning,
        .device_present = true,
        .flash_mode_active = true,
        .firmware_present = true,
        .file_loaded = true},
       "Program"},
      {"Abort pressed, the run still on its way",
       {.moment = kStopped,
        .device_present = true,
        .flash_mode_active = true,
        .firmware_present = true,
        .file_loaded = true},
       "Refresh serial Set Reboot Program Load"},
      {"aborted or failed",
       {.moment = kStopped,
        .device_present = true,
        .flash_mode_active = true,
        .firmware_present = true,
        .file_loaded = true,
        .last_run_failed = true},
       "Refresh serial Set Reboot Program Load"},
      {"stopped, the file unloaded",
       {.moment = kStopped, .device_present = true, .flash_mode_active = true},
       "Refresh serial Set Reboot Load"},
      {"reported with the file programmed, the file unloaded",
       {.device_present = true, .flash_mode_active = true, .file_programmed = true},
       "Refresh serial Set Reboot Execute Load"},
      {"completed, the report older than the run",
       {.moment = kCompleted,
        .device_present = true,
        .flash_mode_active = true,
        .file_loaded = true,
        .file_programmed = true},
       "Refresh Device serial Set Reboot Execute Load"},
  };
  for (const Case& c : cases) {
    EXPECT_EQ(Words(FlashControlsFor(c.state)), c.enabled) << c.when;
  }
}

}  // namespace
}  // namespace quillon
