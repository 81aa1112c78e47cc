// SPDX-License-Identifier: MIT
#include "settings/JoystickRules.h"

#include "settings/InputRules.h"

namespace quillon {
namespace {

bool IsAxis(const Setting& setting) { return setting.id.starts_with("axis_"); }

// The cells of the channel that `on` switches, of which those that choose an axis.
template <typename Visit>
void ForEachAxis(const Sheet& sheet, Cell on, const Visit& visit) {
  for (Cell cell = on; cell < sheet.Cells(); ++cell) {
    if (cell != on && sheet.SettingOf(cell).id == sheet.SettingOf(on).id) return;
    if (IsAxis(sheet.SettingOf(cell))) visit(cell);
  }
}

bool IsOn(const Sheet& sheet, Cell cell) { return sheet.SettingOf(cell).id == "on"; }

// A channel that is off is shown without axes, whatever the board holds of them.
void HideAxesOfChannelsThatAreOff(Sheet& sheet, std::size_t exchange) {
  const auto [first, last] = sheet.CellsOf(exchange);
  for (Cell cell = first; cell < last; ++cell) {
    if (!IsOn(sheet, cell) || sheet.Code(cell) != 0) continue;
    ForEachAxis(sheet, cell, [&](Cell axis) { sheet.ShowInstead(axis, 0); });
  }
}

void KeepOneChannelAnAxis(Sheet& sheet, Cell cell) {
  if (IsAxis(sheet.SettingOf(cell))) ClearOthers(sheet, cell);
}

// A channel that drives no axis goes out as off.
std::uint32_t OnOnlyWithAnAxis(const Sheet& sheet, Cell cell) {
  if (!IsOn(sheet, cell)) return sheet.Code(cell);
  bool drives = false;
  ForEachAxis(sheet, cell, [&](Cell axis) { drives = drives || sheet.Code(axis) != 0; });
  return drives ? sheet.Code(cell) : 0;
}

template <std::uint32_t Rotary>
void InputEdited(Sheet& sheet, Cell cell) {
  const std::string_view id = sheet.SettingOf(cell).id;
  if (id == "master") ClearOthers(sheet, cell);
  if (id == "mode") KeepRotaryPaired(sheet, cell, Rotary);
  if (id == "encoder") CopyDecodingToLineB(sheet, cell);
}

// A FALCO takes both connectors. If only one of them is set to it, by an edit or by what was
// retrieved, the next choice takes that one away.
void KeepFalcoOnBoth(Sheet& sheet, Cell edited) {
  const auto hat1 = sheet.Find("hat", 1, "mode");
  const auto hat2 = sheet.Find("hat", 2, "mode");
  if (!hat1 || !hat2 || IsOn(sheet, edited)) return;
  const bool chosen = (edited == *hat1 || edited == *hat2) && sheet.Code(edited) == kHatFalco;
  if (chosen) sheet.Set(edited == *hat1 ? *hat2 : *hat1, kHatFalco);
  const bool falco1 = sheet.Code(*hat1) == kHatFalco;
  const bool falco2 = sheet.Code(*hat2) == kHatFalco;
  if (falco1 != falco2) sheet.Set(falco1 ? *hat1 : *hat2, kHatPov);
}

// Intended: while the port is off its module is not shown, and an update stores the one that was
// shown before.
void HideModuleOfPortThatIsOff(Sheet& sheet, std::size_t /*exchange*/) {
  const auto active = sheet.Find("port", 1, "active");
  const auto module = sheet.Find("port", 1, "module");
  if (!active || !module || sheet.Code(*active) != 0) return;
  sheet.ShowInstead(*module, sheet.CodeBefore(*module));
}

}  // namespace

const Rules kAnalogRules{HideAxesOfChannelsThatAreOff, KeepOneChannelAnAxis, OnOnlyWithAnAxis};
const Rules kDigitalRules{.edited = InputEdited<kDigitalRotary>};
const Rules kMatrixInputRules{.edited = InputEdited<kMatrixRotary>};
const Rules kHatRules{.edited = KeepFalcoOnBoth};
const Rules kExpansionRules{.retrieved = HideModuleOfPortThatIsOff};

}  // namespace quillon
