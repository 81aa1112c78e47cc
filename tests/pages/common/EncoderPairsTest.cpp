// SPDX-License-Identifier: MIT
#include <gtest/gtest.h>

#include <array>

#include "pages/common/EncoderPairs.h"
#include "pages/common/InputColumns.h"

namespace quillon::testing {
namespace {

constexpr int kRows = 8;

// Eight inputs with a mode and a decoding, as each of the three pages has them: other columns,
// other codes.
struct Places {
  const char* name;
  int mode, encoder;
  QStringList modes;
};

const std::array<Places, 3> kPlaces{
    Places{"16 inputs", 4, 6, {"Normal", "Toggle", "Pulse", "Momentary", "Rotary"}},
    Places{"scan matrix", 4, 5, {"Normal", "Toggle", "Rotary"}},
    Places{"input bank", 3, 5, {"Normal", "Toggle", "Pulse", "Momentary", "Rotary"}}};

struct Inputs {
  explicit Inputs(const Places& places)
      : mode(places.mode),
        encoder(places.encoder),
        rows(grid, 1, records,
             {InputModeColumn(mode, "Mode", places.modes, {0, 4, 4}),
              EncoderColumn(encoder, "Rotary", {2, 0, 4})}),
        pairs(grid, rows, mode, encoder, static_cast<std::uint32_t>(places.modes.size() - 1)) {
    grid.Resize(kRows + 1, encoder + 1);
    rows.BuildCells();
    pairs.BuildCells();
    rows.ShowDefaults();
    pairs.ShowLineB();
    grid.SetEndEditHandler([this](int row, int column) {
      rows.TakeEdit(row, column);
      pairs.OnEndEdit(row, column);
      return true;
    });
  }

  std::string Texts(int column) const {
    QStringList texts;
    for (int row = 1; row <= kRows; ++row) texts << grid.Text(row, column);
    return texts.join(u',').toStdString();
  }

  int mode, encoder;
  CGridCtrl grid;
  std::array<std::uint32_t, kRows> records{};
  GridRows rows;
  EncoderPairs pairs;
};

}  // namespace

TEST(EncoderPairs, AreRotaryOnBothInputsOrOnNeither) {
  struct Edit {
    int row;
    const char* mode;
  };
  const struct {
    std::vector<Edit> edits;
    const char* modes;
  } cases[]{
      {{{4, "Rotary"}}, "Normal,Normal,Rotary,Rotary,Normal,Normal,Normal,Normal"},
      {{{5, "Rotary"}}, "Normal,Normal,Normal,Normal,Rotary,Rotary,Normal,Normal"},
      {{{4, "Rotary"}, {3, "Toggle"}}, "Normal,Normal,Toggle,Normal,Normal,Normal,Normal,Normal"},
      {{{3, "Rotary"}, {4, "Normal"}}, "Normal,Normal,Normal,Normal,Normal,Normal,Normal,Normal"},
      {{{7, "Toggle"}, {8, "Rotary"}}, "Normal,Normal,Normal,Normal,Normal,Normal,Rotary,Rotary"},
      {{{1, "Toggle"}, {2, "Normal"}}, "Toggle,Normal,Normal,Normal,Normal,Normal,Normal,Normal"},
      {{{2, "Rotary"}, {3, "Toggle"}}, "Rotary,Rotary,Toggle,Normal,Normal,Normal,Normal,Normal"},
  };
  for (const Places& places : kPlaces) {
    SCOPED_TRACE(places.name);
    for (const auto& c : cases) {
      Inputs inputs(places);
      for (const Edit& edit : c.edits) inputs.grid.Enter(edit.row, inputs.mode, edit.mode);
      EXPECT_EQ(inputs.Texts(inputs.mode), c.modes);
      for (int row = 1; row <= kRows; ++row) {
        EXPECT_EQ(inputs.grid.Value(row, inputs.mode),
                  places.modes.indexOf(inputs.grid.Text(row, inputs.mode)));
      }
    }
  }
}

TEST(EncoderPairs, CarryTheDecodingChosenOnTheOddInput) {
  const struct {
    const char* chosen;
    const char* line_b;
    std::uint32_t code;
  } cases[]{{"GRAY 1X - A", "GRAY 1X - B", 1},
            {"GRAY 2X - A", "GRAY 2X - B", 2},
            {"GRAY 4X - A", "GRAY 4X - B", 3},
            {"None", "None", 0}};
  for (const Places& places : kPlaces) {
    SCOPED_TRACE(places.name);
    Inputs inputs(places);
    for (const auto& c : cases) {
      inputs.grid.Enter(7, inputs.encoder, c.chosen);
      EXPECT_EQ(inputs.grid.Value(7, inputs.encoder), c.code);
      EXPECT_EQ(inputs.grid.Text(8, inputs.encoder), c.line_b);
      EXPECT_EQ(inputs.grid.Value(8, inputs.encoder), c.code);
      EXPECT_EQ(inputs.grid.Text(6, inputs.encoder), "None");
    }
    EXPECT_EQ(inputs.grid.Kind(7, inputs.encoder), CellKind::kCombo);
    EXPECT_EQ(inputs.grid.Kind(8, inputs.encoder), CellKind::kPlain) << "cannot be chosen";
  }
}

TEST(EncoderPairs, ShowOrTakeTheCodesOfLineB) {
  Inputs inputs(kPlaces[0]);
  inputs.records = {0x010000, 0x020000, 0x030000, 0x000000, 0x010000, 0x040000, 0x020000, 0x030000};
  inputs.rows.Show();
  inputs.pairs.ShowLineB();
  EXPECT_EQ(inputs.Texts(inputs.encoder),
            "GRAY 1X - A,GRAY 2X - B,GRAY 4X - A,None,GRAY 1X - A,None,GRAY 2X - A,GRAY 4X - B");
  inputs.pairs.CopyToLineB();
  EXPECT_EQ(inputs.Texts(inputs.encoder),
            "GRAY 1X - A,GRAY 1X - B,GRAY 4X - A,GRAY 4X - B,GRAY 1X - A,GRAY 1X - B,GRAY 2X - A,"
            "GRAY 2X - B");
  EXPECT_EQ(inputs.grid.Value(4, inputs.encoder), 3U);
}

TEST(EncoderPairs, PaintEachPairAsAUnitAndTheClickedRowApart) {
  constexpr QRgb kDark = qRgb(220, 220, 220), kPale = qRgb(240, 240, 240);
  constexpr QRgb kClicked = qRgb(191, 212, 227);
  Inputs inputs(kPlaces[0]);
  const auto bands = [&](int column) {
    std::vector<QRgb> colours;
    for (int row = 1; row <= kRows; ++row) colours.push_back(*inputs.grid.Background(row, column));
    return colours;
  };
  inputs.pairs.PaintBands();
  const std::vector<QRgb> all{kDark, kDark, kPale, kPale, kDark, kDark, kPale, kPale};
  EXPECT_EQ(bands(1), all);
  EXPECT_EQ(bands(inputs.encoder), all);
  inputs.pairs.PaintBands(4);
  inputs.pairs.PaintBands(6);
  const std::vector<QRgb> clicked{kDark, kDark, kPale, kPale, kDark, kClicked, kPale, kPale};
  EXPECT_EQ(bands(1), clicked);
  EXPECT_EQ(bands(inputs.encoder), clicked);
}

}  // namespace quillon::testing
