// SPDX-License-Identifier: MIT
#include <gmock/gmock.h>

#include <string>
#include <utility>

#include "pages/common/FlashControls.h"

namespace quillon {
namespace {

// The enabled controls as words, in the order of the page.
std::string Words(const FlashControls& controls) {
  const char* const names[kFlashControls] = {"Refresh", "Flash",   "Device",  "serial", "Set",
                                             "Reboot",  "Program", "Execute", "Load"};
  std::string words;
  for (std::size_t i = 0; i < kFlashControls; ++i) {
    if (!controls.Has(static_cast<FlashControl>(i))) continue;
    words += (words.empty() ? "" : " ") + std::string(names[i]);
  }
  return words;
}

// The state that words stand for; "bare": no file was loaded when the report was built.
FlashPageState StateOf(const std::string& words) {
  const auto has = [&](const char* word) { return words.find(word) != std::string::npos; };
  const auto moment = has("running")     ? FlashMoment::kRunning
                      : has("stopped")   ? FlashMoment::kStopped
                      : has("completed") ? FlashMoment::kCompleted
                                         : FlashMoment::kReported;
  return {.moment = moment,
          .device_present = has("board"),
          .flash_mode_active = has("flash"),
          .firmware_present = has("valid"),
          .file_loaded = has("file"),
          .file_programmed = has("programmed"),
          .reported_without_file = has("bare"),
          .last_run_failed = has("failed"),
          .newer_node_system = has("newer")};
}

TEST(FlashControls, FollowTheStateOfBoardFileAndRun) {
  const std::pair<const char*, const char*> cases[] = {
      {"file", "Refresh"},
      {"flash file failed", "Refresh"},
      {"board valid", "Refresh Flash serial Set Reboot"},
      {"board valid file", "Refresh Flash serial Set Reboot"},
      {"board file failed", "Refresh Flash serial Set Reboot"},
      {"board flash valid", "Refresh Device serial Set Reboot Load"},
      {"board flash", "Refresh serial Set Reboot Load"},
      {"board flash valid file", "Refresh Device serial Set Reboot Program Load"},
      {"board flash valid file programmed", "Refresh Device serial Set Reboot Execute Load"},
      {"board flash file programmed", "Refresh serial Set Reboot Execute Load"},
      {"board flash valid file failed", "Refresh serial Set Reboot Program Load"},
      {"board flash valid failed", "Refresh serial Set Reboot Load"},
      {"board flash valid file programmed failed", "Refresh serial Set Reboot Load"},
      {"board valid newer", "Refresh Flash serial Set Reboot Load"},
      {"board flash valid newer", "Refresh Device serial Set Reboot Load"},
      {"board flash valid file programmed newer", "Refresh Device serial Set Reboot Load"},
      {"board flash valid file running", "Program"},
      {"board flash valid file stopped", "Refresh serial Set Reboot Program Load"},
      {"board flash valid file failed stopped", "Refresh serial Set Reboot Program Load"},
      {"board flash stopped", "Refresh serial Set Reboot Load"},
      {"board flash programmed", "Refresh serial Set Reboot Execute Load"},
      {"board flash programmed bare", "Refresh serial Set Reboot Load"},
      {"board flash file programmed completed", "Refresh Device serial Set Reboot Execute Load"},
  };
  for (const auto& [state, enabled] : cases) {
    EXPECT_EQ(Words(FlashControlsFor(StateOf(state))), enabled) << state;
  }
}

}  // namespace
}  // namespace quillon
