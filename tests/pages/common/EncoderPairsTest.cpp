// SPDX-License-Identifier: MIT
#include <gtest/gtest.h>

#include <array>

#include "pages/common/EncoderPairs.h"
#include "pages/common/InputColumns.h"

namespace quillon::testing {
namespace {

constexpr int kRows = 8, kMode = 4, kEncoder = 6;

// Eight inputs with a mode and a decoding.
struct Inputs {
  Inputs()
      : rows(grid, 1, records,
             {InputModeColumn(kMode, "Mode", {"Normal", "Rotary"}, {0, 4, 4}),
              EncoderColumn(kEncoder, "Rotary", {2, 0, 4})}),
        pairs(grid, rows, kMode, kEncoder, 1) {
    grid.Resize(kRows + 1, kEncoder + 1);
    rows.BuildCells();
    pairs.BuildCells();
  }

  CGridCtrl grid;
  std::array<std::uint32_t, kRows> records{};
  GridRows rows;
  EncoderPairs pairs;
};

}  // namespace

TEST(EncoderPairs, ChooseTheDecodingOnTheOddInputOnly) {
  Inputs inputs;
  for (int row = 1; row <= kRows; ++row) {
    EXPECT_EQ(inputs.grid.Kind(row, kEncoder), row % 2 == 0 ? CellKind::kPlain : CellKind::kCombo);
    EXPECT_TRUE(inputs.grid.IsEnabledCell(row, kEncoder)) << "shown, though not chosen";
  }
}

TEST(EncoderPairs, PaintEachPairAsAUnitAndTheClickedRowApart) {
  constexpr QRgb kDark = qRgb(220, 220, 220), kPale = qRgb(240, 240, 240);
  constexpr QRgb kClicked = qRgb(191, 212, 227);
  Inputs inputs;
  const auto bands = [&](int column) {
    std::vector<QRgb> colours;
    for (int row = 1; row <= kRows; ++row) colours.push_back(*inputs.grid.Background(row, column));
    return colours;
  };
  inputs.pairs.PaintBands();
  const std::vector<QRgb> all{kDark, kDark, kPale, kPale, kDark, kDark, kPale, kPale};
  EXPECT_EQ(bands(1), all);
  EXPECT_EQ(bands(kEncoder), all);
  inputs.pairs.PaintBands(4);
  inputs.pairs.PaintBands(6);
  const std::vector<QRgb> clicked{kDark, kDark, kPale, kPale, kDark, kClicked, kPale, kPale};
  EXPECT_EQ(bands(1), clicked);
  EXPECT_EQ(bands(kEncoder), clicked);
}

}  // namespace quillon::testing
