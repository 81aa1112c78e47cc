// SPDX-License-Identifier: MIT
#include "settings/InputRules.h"

namespace quillon {
namespace {

std::optional<Cell> Partner(const Sheet& sheet, Cell cell) {
  const int line = sheet.LineOf(cell);
  return sheet.Find(sheet.TableOf(cell), line % 2 == 0 ? line - 1 : line + 1,
                    sheet.SettingOf(cell).id);
}

}  // namespace

void KeepRotaryPaired(Sheet& sheet, Cell mode, std::uint32_t rotary) {
  const auto partner = Partner(sheet, mode);
  if (!partner) return;
  if (sheet.Code(mode) == rotary) {
    sheet.Set(*partner, rotary);
  } else if (sheet.Code(*partner) == rotary) {
    sheet.Set(*partner, 0);
  }
}

void CopyDecodingToLineB(Sheet& sheet, Cell encoder) {
  if (sheet.LineOf(encoder) % 2 == 0) return;
  const auto partner = Partner(sheet, encoder);
  if (partner) sheet.Set(*partner, sheet.Code(encoder));
}

void ClearOthers(Sheet& sheet, Cell cell) {
  for (Cell other = 0; other < sheet.Cells(); ++other) {
    const bool same = sheet.SettingOf(other).id == sheet.SettingOf(cell).id;
    if (same && other != cell) sheet.Set(other, 0);
  }
}

}  // namespace quillon
