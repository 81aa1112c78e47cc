// SPDX-License-Identifier: MIT
#include "pages/joystick/CScanMatrixChannelsPage.h"

#include "pages/common/ChannelGrid.h"
#include "pages/common/EditMarks.h"
#include "pages/common/InputColumns.h"

namespace quillon {
namespace {

enum Column { kOn = 1, kMaster, kInvert, kMode, kEncoder, kPush, kPull, kHold, kColumns };

constexpr int kInputs = matrix_input::Block::kRecords;
constexpr int kRowsOfPair = 2;
constexpr std::uint32_t kRotary = 2;
constexpr std::uint32_t kLastButton = 64;

std::vector<GridColumn> InputColumns() {
  return {
      InputOnColumn(kOn, matrix_input::kOn),
      InputMasterColumn(kMaster, matrix_input::kMaster),
      InputInvertColumn(kInvert, matrix_input::kInvert),
      InputModeColumn(kMode, QStringLiteral("       Mode       "), {"Normal", "Toggle", "Rotary"},
                      matrix_input::kMode),
  };
}

GridColumn PairButtonColumn(int column, const QString& title, Field field, const QString& what) {
  auto buttons = NumberedChoices(QStringLiteral("Button %1"), 1, kLastButton);
  buttons.insert(buttons.begin(), {QStringLiteral("None"), 0});
  return {.column = column,
          .title = title,
          .tip = QStringLiteral("The button that the board keeps for %1 of the pair's encoder, 1 "
                                "to 64 or none. Default: None.")
                     .arg(what),
          .kind = CellKind::kCombo,
          .field = field,
          .choices = std::move(buttons),
          .maximum = kLastButton};
}

std::vector<GridColumn> PairColumns() {
  return {
      EncoderColumn(kEncoder, QStringLiteral("       Rotary       "), matrix_pair::kEncoder),
      PairButtonColumn(kPush, QStringLiteral("       Push       "), matrix_pair::kPush,
                       QStringLiteral("Push")),
      PairButtonColumn(kPull, QStringLiteral("        Pull        "), matrix_pair::kPull,
                       QStringLiteral("Pull")),
      {.column = kHold,
       .title = QStringLiteral("Hold"),
       .tip = QStringLiteral("Hold for the push and pull buttons of the pair's encoder. "
                             "Default: off."),
       .kind = CellKind::kCheckBox,
       .field = matrix_pair::kHold},
  };
}

}  // namespace

CScanMatrixChannelsPage::CScanMatrixChannelsPage(PageContext context, QWidget* parent)
    : CSettingsPage(context, tr("Digital Inputs Configuration"), parent),
      grid_(AddChannelGrid(Body(), tr("Digital channels"), kInputs + 1, kColumns)),
      input_rows_(*grid_, 1, inputs_.Words(), InputColumns()),
      pair_rows_(*grid_, 1, pairs_.Words(), PairColumns(), kRowsOfPair),
      encoder_pairs_(*grid_, input_rows_, kMode, kEncoder, kRotary) {
  TitleRows(*grid_, 1, kInputs, QStringLiteral("Input %1"));
  input_rows_.BuildCells();
  pair_rows_.BuildCells();
  encoder_pairs_.BuildCells();
  grid_->SetClickHandler([this](int row, int column) { OnClick(row, column); });
  grid_->SetEndEditHandler([this](int row, int column) { return OnEndEdit(row, column); });
  DefaultsRoutine();
  grid_->FitColumns();
  Marks().Track(grid_);
}

bool CScanMatrixChannelsPage::RetrieveRoutine() {
  if (!RetrieveRange(matrix_input::kRead, matrix_input::kStart, matrix_input::kEnd, inputs_)) {
    return false;
  }
  input_rows_.Show();
  grid_->Redraw();
  if (!RetrieveRange(matrix_pair::kRead, matrix_pair::kStart, matrix_pair::kEnd, pairs_)) {
    return false;
  }
  pair_rows_.Show();
  encoder_pairs_.CopyToLineB();
  grid_->Redraw();
  return true;
}

bool CScanMatrixChannelsPage::UpdateRoutine() {
  input_rows_.Store();
  pair_rows_.Store();
  return UpdateRange(matrix_input::kWrite, matrix_input::kStart, matrix_input::kEnd, inputs_) &&
         UpdateRange(matrix_pair::kWrite, matrix_pair::kStart, matrix_pair::kEnd, pairs_);
}

void CScanMatrixChannelsPage::DefaultsRoutine() {
  input_rows_.ShowDefaults();
  pair_rows_.ShowDefaults();
  encoder_pairs_.CopyToLineB();
  encoder_pairs_.PaintBands();
  grid_->Redraw();
}

void CScanMatrixChannelsPage::OnClick(int row, int column) {
  encoder_pairs_.PaintBands(row);
  if (column == kMaster) ClearOtherRows(*grid_, row, column);
}

bool CScanMatrixChannelsPage::OnEndEdit(int row, int column) {
  if (!input_rows_.TakeEdit(row, column) && !pair_rows_.TakeEdit(row, column)) return false;
  encoder_pairs_.OnEndEdit(row, column);
  return true;
}

}  // namespace quillon
