// SPDX-License-Identifier: MIT
#include "pages/common/InputGrid.h"

#include "pages/common/UserPrompts.h"

namespace quillon {
namespace {

// More can be typed than a pulse width may be, so that the page can say what is wrong.
constexpr std::uint32_t kLargestPulseEntry = 999;

}  // namespace

GridLayout InputGrid() {
  using enum CellKind;
  return {.columns = {{"on", kImageToggle},
                      {"master", kCheckBox},
                      {"invert", kCheckBox},
                      {"mode", kCombo},
                      {"pulse_width", kNumber, kLargestPulseEntry},
                      {"encoder", kCombo},
                      {"push", kCombo},
                      {"pull", kCombo},
                      {"hold", kCheckBox}},
          .tables = {{"input"}},
          .ground = kPairGround};
}

bool AcceptInput(const Setting& setting, std::uint32_t entered, UserPrompts& prompts,
                 QWidget* parent) {
  if (setting.id != "pulse_width" || entered <= setting.most) return true;
  prompts.Message(parent, QStringLiteral("Enter a value between 0 - 255"),
                  QStringLiteral("Invalid Pulse Width"), UserPrompts::Icon::kExclamation);
  return false;
}

}  // namespace quillon
