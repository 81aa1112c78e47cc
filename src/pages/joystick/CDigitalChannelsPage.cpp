// SPDX-License-Identifier: MIT
#include "pages/joystick/CDigitalChannelsPage.h"

#include <QBoxLayout>
#include <QCheckBox>

#include "pages/common/ChannelGrid.h"
#include "pages/common/EditMarks.h"
#include "pages/common/InputColumns.h"

namespace quillon {
namespace {

enum Column { kOn = 1, kMaster, kInvert, kMode, kPulseWidth, kEncoder, kColumns };

constexpr int kInputs = digital::Block::kRecords;
constexpr std::uint32_t kRotary = 4;

std::vector<GridColumn> Columns() {
  return {
      InputOnColumn(kOn, digital::kOn),
      InputMasterColumn(kMaster, digital::kMaster),
      InputInvertColumn(kInvert, digital::kInvert),
      InputModeColumn(kMode, QStringLiteral("       Mode       "),
                      {"Normal", "Toggle", "Pulse", "Momentary", "Rotary"}, digital::kMode),
      PulseWidthColumn(kPulseWidth, digital::kPulseWidth),
      EncoderColumn(kEncoder, QStringLiteral("            Rotary            "), digital::kEncoder),
  };
}

}  // namespace

CDigitalChannelsPage::CDigitalChannelsPage(PageContext context, ScanMatrix scan_matrix,
                                           QWidget* parent)
    : CSettingsPage(context, tr("Digital Inputs Configuration"), parent),
      scan_matrix_(scan_matrix),
      grid_(AddChannelGrid(Body(), tr("Digital channels"), kInputs + 1, kColumns)),
      rows_(*grid_, 1, block_.Words(), Columns()),
      encoder_pairs_(*grid_, rows_, kMode, kEncoder, kRotary) {
  TitleRows(*grid_, 1, kInputs, QStringLiteral("Input %1"));
  rows_.BuildCells();
  encoder_pairs_.BuildCells();
  AddScanMatrixBox();
  grid_->SetClickHandler([this](int row, int column) { OnClick(row, column); });
  grid_->SetEndEditHandler([this](int row, int column) { return OnEndEdit(row, column); });
  DefaultsRoutine();
  grid_->FitColumns();
  Marks().Track(grid_);
}

void CDigitalChannelsPage::AddScanMatrixBox() {
  scan_matrix_box_ = new QCheckBox(tr("Scan matrix mode."));
  scan_matrix_box_->setEnabled(HasScanMatrix());
  scan_matrix_box_->setToolTip(
      HasScanMatrix() ? tr("The board reads its inputs as a scan matrix. Load page defaults leaves "
                           "this as it is.")
                      : tr("This board has no scan matrix mode of its own inputs."));
  Body()->addWidget(scan_matrix_box_);
  Marks().Track(scan_matrix_box_);
}

bool CDigitalChannelsPage::RetrieveRoutine() {
  const bool retrieved = HasScanMatrix() ? RetrieveBlock(digital::kRead, scan_matrix_byte_, block_)
                                         : RetrieveBlock(digital::kRead, block_);
  if (!retrieved) return false;
  scan_matrix_box_->setChecked(scan_matrix_byte_.Get(0, digital::kScanMatrix) != 0);
  rows_.Show();
  encoder_pairs_.ShowLineB();
  grid_->Redraw();
  return true;
}

bool CDigitalChannelsPage::UpdateRoutine() {
  rows_.Store();
  if (!HasScanMatrix()) return UpdateBlock(digital::kWrite, block_);
  // The byte is 0 or 1 whatever the board held in its other bits.
  scan_matrix_byte_ = {};
  scan_matrix_byte_.Set(0, digital::kScanMatrix, scan_matrix_box_->isChecked() ? 1 : 0);
  return UpdateBlock(digital::kWrite, scan_matrix_byte_, block_);
}

void CDigitalChannelsPage::DefaultsRoutine() {
  rows_.ShowDefaults();
  encoder_pairs_.ShowLineB();
  encoder_pairs_.PaintBands();
  grid_->Redraw();
}

void CDigitalChannelsPage::OnClick(int row, int column) {
  encoder_pairs_.PaintBands(row);
  if (column == kMaster) ClearOtherRows(*grid_, row, column);
}

bool CDigitalChannelsPage::OnEndEdit(int row, int column) {
  const bool refused =
      column == kPulseWidth && RefusePulseWidth(grid_->Value(row, column), Context().prompts, this);
  if (refused || !rows_.TakeEdit(row, column)) return false;
  encoder_pairs_.OnEndEdit(row, column);
  return true;
}

}  // namespace quillon
