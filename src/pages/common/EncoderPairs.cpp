// SPDX-License-Identifier: MIT
#include "pages/common/EncoderPairs.h"

#include "pages/common/ChannelGrid.h"

namespace quillon {
namespace {

constexpr QRgb kOddPairs = 0xFFDCDCDC;   // RGB(220,220,220)
constexpr QRgb kEvenPairs = 0xFFF0F0F0;  // RGB(240,240,240)
constexpr std::uint32_t kNormal = 0;

QString LineBText(std::uint32_t code) {
  return code == 0 ? QStringLiteral("None") : QStringLiteral("GRAY %1X - B").arg(1 << (code - 1));
}

}  // namespace

EncoderPairs::EncoderPairs(CGridCtrl& grid, GridRows& inputs, int mode_column, int encoder_column,
                           std::uint32_t rotary)
    : grid_(grid),
      inputs_(inputs),
      mode_column_(mode_column),
      encoder_column_(encoder_column),
      rotary_(rotary) {}

void EncoderPairs::BuildCells() {
  for (int row = 2; row < grid_.Rows(); row += 2) {
    grid_.SetKind(row, encoder_column_, CellKind::kPlain);
    grid_.SetEnabledCell(row, encoder_column_, true);
  }
}

void EncoderPairs::ShowLineB() {
  for (int row = 2; row < grid_.Rows(); row += 2) {
    grid_.SetText(row, encoder_column_, LineBText(grid_.Value(row, encoder_column_)));
  }
}

void EncoderPairs::CopyToLineB() {
  for (int row = 1; row < grid_.Rows(); row += 2) CopyPairToLineB(row);
}

void EncoderPairs::CopyPairToLineB(int odd_row) {
  const std::uint32_t code = grid_.Value(odd_row, encoder_column_);
  grid_.SetValue(odd_row + 1, encoder_column_, code);
  grid_.SetText(odd_row + 1, encoder_column_, LineBText(code));
}

void EncoderPairs::OnEndEdit(int row, int column) {
  if (column == encoder_column_ && row % 2 != 0) CopyPairToLineB(row);
  if (column != mode_column_) return;
  const int partner = PartnerOf(row);
  if (grid_.Value(row, mode_column_) == rotary_) {
    inputs_.SetCode(partner, mode_column_, rotary_);
  } else if (grid_.Value(partner, mode_column_) == rotary_) {
    inputs_.SetCode(partner, mode_column_, kNormal);
  }
}

void EncoderPairs::PaintBands(int clicked_row) {
  for (int row = 1; row < grid_.Rows(); ++row) {
    const QRgb band = (row - 1) / 2 % 2 == 0 ? kOddPairs : kEvenPairs;
    for (int column = 1; column < grid_.Columns(); ++column) {
      grid_.SetBackground(row, column, row == clicked_row ? kClickedRow : band);
    }
  }
}

}  // namespace quillon
