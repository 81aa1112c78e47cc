// SPDX-License-Identifier: MIT
#include "settings/DigitalPortRules.h"

#include "settings/DigitalPortSettings.h"
#include "settings/InputRules.h"

namespace quillon {
namespace {

constexpr std::uint32_t kInputRotary = 4;

// Intended: the title of the column becomes "Normal" too, like the mode of every other row.
void KeepOneRotaryPort(Sheet& sheet, Cell cell) {
  if (sheet.SettingOf(cell).id != "mode" || sheet.Code(cell) != kPortRotary) return;
  ClearOthers(sheet, cell);
  sheet.Retitle("mode", "Normal");
}

void InputEdited(Sheet& sheet, Cell cell) {
  const std::string_view id = sheet.SettingOf(cell).id;
  if (id == "mode") KeepRotaryPaired(sheet, cell, kInputRotary);
  if (id == "encoder") CopyDecodingToLineB(sheet, cell);
}

void NumberInputs(Sheet& sheet) {
  const auto bank = sheet.Find("board", 1, "bank");
  if (bank) sheet.NumberRows("input", static_cast<int>(sheet.Code(*bank)) * kInputsOfBank);
}

// Intended: the rows keep their names until the bank's inputs were retrieved too.
void NumberRetrievedInputs(Sheet& sheet, std::size_t exchange) {
  if (exchange + 1 == sheet.Exchanges().size()) NumberInputs(sheet);
}

}  // namespace

const Rules kDigitalPortRules{.edited = KeepOneRotaryPort};
const Rules kInputBankRules{
    .retrieved = NumberRetrievedInputs, .edited = InputEdited, .defaulted = NumberInputs};

}  // namespace quillon
