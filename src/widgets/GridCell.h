// SPDX-License-Identifier: MIT
#pragma once

#include <QRgb>
#include <QString>
#include <QStringList>
#include <cstdint>
#include <optional>

namespace quillon {

enum class CellKind {
  kPlain,
  kImageToggle,
  kCheckBox,
  kNamedCheckBox,  // with the text beside the box
  kRadio,
  kCombo,
  kNumber,
  kProgress,  // a bar of `value` per cent
};

// Kinds that a click switches between 0 and 1.
constexpr bool IsToggle(CellKind kind) {
  return kind == CellKind::kImageToggle || kind == CellKind::kCheckBox ||
         kind == CellKind::kNamedCheckBox || kind == CellKind::kRadio;
}

// One cell of a grid. The text is what is shown, the value is the code that pages send to a board;
// neither is derived from the other here, so a cell can show what its list of choices lacks.
struct GridCell {
  QString text;
  QStringList choices;  // Combo; cells of one column share one list
  std::optional<QRgb> background;
  std::uint32_t value = 0;
  int minimum = 0;  // Number
  int maximum = 0;
  CellKind kind = CellKind::kPlain;
  bool enabled = true;
  bool marked = false;
  bool edited = false;  // why it is marked
};

}  // namespace quillon
