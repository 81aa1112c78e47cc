// SPDX-License-Identifier: MIT
#include "pages/common/InputColumns.h"

#include "pages/common/UserPrompts.h"

namespace quillon {
namespace {

constexpr std::uint32_t kLargestPulseWidth = 255;
constexpr std::uint32_t kLargestPulseEntry = 999;

}  // namespace

GridColumn InputOnColumn(int column, Field field) {
  return {.column = column,
          .title = QStringLiteral("ON"),
          .tip = QStringLiteral("Switches the input on. Default: on."),
          .kind = CellKind::kImageToggle,
          .field = field,
          .standard = 1};
}

GridColumn InputMasterColumn(int column, Field field) {
  return {.column = column,
          .title = QStringLiteral("Master"),
          .tip = QStringLiteral("Makes the input the board's master switch. A click leaves one "
                                "master at most. Default: off."),
          .kind = CellKind::kCheckBox,
          .field = field};
}

GridColumn InputInvertColumn(int column, Field field) {
  return {.column = column,
          .title = QStringLiteral("Invert"),
          .tip = QStringLiteral("Reverses the input: open counts as pressed. Default: off."),
          .kind = CellKind::kCheckBox,
          .field = field};
}

GridColumn InputModeColumn(int column, const QString& title, const QStringList& modes,
                           Field field) {
  GridColumn mode{.column = column,
                  .title = title,
                  .tip = QStringLiteral("What the board makes of the input: %1. A pair of inputs "
                                        "is Rotary on both or on neither. Default: Normal.")
                             .arg(modes.join(QStringLiteral(", "))),
                  .kind = CellKind::kCombo,
                  .field = field};
  for (const QString& text : modes) {
    mode.choices.push_back({text, static_cast<std::uint32_t>(mode.choices.size())});
  }
  return mode;
}

GridColumn PulseWidthColumn(int column, Field field) {
  return {.column = column,
          .title = QStringLiteral("Pulse (x 10ms)"),
          .tip = QStringLiteral("How long a pulse lasts, in units of 10 ms, 0 to 255. Default: 0."),
          .kind = CellKind::kNumber,
          .field = field,
          .largest_entry = kLargestPulseEntry};
}

GridColumn EncoderColumn(int column, const QString& title, Field field) {
  return {.column = column,
          .title = title,
          .tip = QStringLiteral("How the board decodes a rotary encoder on a pair of inputs: line "
                                "A on the odd one, where it is chosen, line B on the even one. "
                                "Default: None."),
          .kind = CellKind::kCombo,
          .field = field,
          .choices = {{QStringLiteral("None"), 0},
                      {QStringLiteral("GRAY 1X - A"), 1},
                      {QStringLiteral("GRAY 2X - A"), 2},
                      {QStringLiteral("GRAY 4X - A"), 3}}};
}

bool RefusePulseWidth(std::uint32_t entered, UserPrompts& prompts, QWidget* parent) {
  if (entered <= kLargestPulseWidth) return false;
  prompts.Message(parent, QStringLiteral("Enter a value between 0 - 255"),
                  QStringLiteral("Invalid Pulse Width"), UserPrompts::Icon::kExclamation);
  return true;
}

}  // namespace quillon
