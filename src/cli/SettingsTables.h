// SPDX-License-Identifier: MIT
#pragma once

#include <string>
#include <string_view>
#include <vector>

#include "settings/Setting.h"

// The manual's tables: what the window's lists and tooltips say, one row a setting.
namespace quillon {

struct SettingsTable {
  std::string name;  // of its file, without an ending: "joystick-analog-channels"
  std::string text;  // AsciiDoc
};

// The table of one page of a family, whose name stands in its caption; `prefix` begins its name.
// Rows of equal settings stand together in it, as do settings that differ in their titles only.
SettingsTable TableOf(const Page& page, std::string_view family, std::string_view prefix);

// The tables of all pages of all families.
std::vector<SettingsTable> AllSettingsTables();

}  // namespace quillon
