// SPDX-License-Identifier: MIT
#include "pages/joystick/CAnalogChannelsPage.h"

#include <QBoxLayout>

#include "pages/common/ChannelGrid.h"
#include "pages/common/EditMarks.h"
#include "pages/joystick/AxisNames.h"

namespace quillon {
namespace {

enum Column {
  kOn = 1,
  kFirstAxis = 2,
  kLastAxis = 9,
  kInvert,
  kSpike,
  kFilter,
  kResolution,
  kIncremental,
  kCentering
};

constexpr int kFirstAnalogRow = 1;
constexpr int kLastAnalogRow = 8;
constexpr int kFirstEncoderRow = 9;
constexpr int kIncrementalRow = 15;
constexpr int kEncoders = 6;  // records of the encoder block before the incremental channel's
constexpr std::size_t kIncrementalRecord = 6;

// Resolutions are stored as bits - 1.
constexpr std::uint32_t kFourBits = 3;
constexpr std::uint32_t kTwelveBits = 11;
constexpr std::uint32_t kThirteenBits = 12;
constexpr std::uint32_t kSixteenBits = 15;
constexpr std::uint32_t kLargestFilter = 10;
constexpr std::uint32_t kDefaultFilter = 5;

// The columns that both kinds of channel have. A tooltip belongs to the whole column, so it speaks
// of all channels that the family has.
std::vector<GridColumn> ChannelColumns(AnalogInputs inputs, Field on, Field invert) {
  const bool encoders = inputs == AnalogInputs::kWithEncoders;
  std::vector<GridColumn> columns{
      {.column = kOn,
       .title = QStringLiteral("ON"),
       .tip = QStringLiteral("Switches the channel on. One that drives no axis is sent as off. "
                             "Default: on%1.")
                  .arg(encoders ? QStringLiteral(" for the analog inputs") : QString()),
       .kind = CellKind::kImageToggle,
       .field = on},
      {.column = kInvert,
       .title = QStringLiteral("Invert"),
       .tip = QStringLiteral("Reverses the direction of the axis. Default: off."),
       .kind = CellKind::kCheckBox,
       .field = invert}};
  const QStringList axes = AxisNames();
  for (int axis = 0; axis < axes.size(); ++axis) {
    columns.push_back(
        {.column = kFirstAxis + axis,
         .title = axes[axis],
         .tip = QStringLiteral("The channel drives the %1 axis. One channel at most drives an "
                               "axis; a channel may drive several.")
                    .arg(axes[axis]),
         .kind = CellKind::kRadio,
         .field = AxisBit(static_cast<std::size_t>(axis))});
  }
  return columns;
}

GridColumn Resolution(AnalogInputs inputs, Field field, std::uint32_t largest,
                      std::uint32_t clamp_at) {
  return {.column = kResolution,
          .title = QStringLiteral("Resolution"),
          .tip = inputs == AnalogInputs::kAnalogOnly
                     ? QStringLiteral("Bits of the channel's value: 4 to 12. Default: 12.")
                     : QStringLiteral("Bits of the channel's value: 4 to 12 for analog inputs, to "
                                      "13 for encoders, to 16 for the incremental channel. "
                                      "Default: 12, incremental channel 16."),
          .kind = CellKind::kCombo,
          .field = field,
          .choices = NumberedChoices(QStringLiteral("%1 Bits"), largest, kFourBits, 1),
          .describe = QStringLiteral("%1 Bits"),
          .describe_offset = 1,
          .minimum = kFourBits,
          .maximum = clamp_at};
}

std::vector<GridColumn> AnalogColumns(AnalogInputs inputs) {
  auto columns = ChannelColumns(inputs, analog::kOn, analog::kInvert);
  columns.push_back(
      {.column = kSpike,
       .title = QStringLiteral("Spike"),
       .tip = QStringLiteral("Suppresses single values that stand out. Default: off."),
       .kind = CellKind::kCheckBox,
       .field = analog::kSpike});
  columns.push_back({.column = kFilter,
                     .title = QStringLiteral(" Filter "),
                     .tip = QStringLiteral("How strongly the value is smoothed, 0 to 10. "
                                           "Default: 5."),
                     .kind = CellKind::kCombo,
                     .field = analog::kFilter,
                     .choices = NumberedChoices(QStringLiteral("%1"), kLargestFilter, 0),
                     .maximum = kLargestFilter});
  columns.push_back(Resolution(inputs, analog::kResolution, kTwelveBits, kTwelveBits));
  return columns;
}

// The absolute encoders and the incremental channel share a record layout. A board may hold a
// resolution or a button that the lists do not offer; it is shown and kept.
std::vector<GridColumn> EncoderColumns(std::uint32_t largest_resolution) {
  constexpr auto kInputs = AnalogInputs::kWithEncoders;
  auto columns = ChannelColumns(kInputs, encoder::kOn, encoder::kInvert);
  columns.push_back(Resolution(kInputs, encoder::kResolution, largest_resolution, kSixteenBits));
  auto buttons = NumberedChoices(QStringLiteral("Button %1"), 1, 16);
  buttons.insert(buttons.begin(), {QStringLiteral("None"), 0});
  columns.push_back({.column = kCentering,
                     .title = QStringLiteral("Centering Button"),
                     .tip = QStringLiteral("The button that centres the channel, 1 to 16 or none. "
                                           "Default: None."),
                     .kind = CellKind::kCombo,
                     .field = encoder::kCentering,
                     .choices = std::move(buttons),
                     .describe = QStringLiteral("Button %1")});
  return columns;
}

std::vector<GridColumn> AbsoluteEncoderColumns() {
  auto columns = EncoderColumns(kThirteenBits);
  columns.push_back({.column = kIncremental,
                     .title = QStringLiteral("Incremental"),
                     .tip = QStringLiteral("The encoder counts steps instead of its absolute "
                                           "position. Default: off."),
                     .kind = CellKind::kCheckBox,
                     .field = encoder::kIncremental});
  return columns;
}

}  // namespace

CAnalogChannelsPage::CAnalogChannelsPage(PageContext context, AnalogInputs inputs, QWidget* parent)
    : CSettingsPage(context, tr("Analog Inputs Configuration"), parent),
      inputs_(inputs),
      grid_(AddChannelGrid(Body(), tr("Analog channels"),
                           HasEncoders() ? kIncrementalRow + 1 : kLastAnalogRow + 1,
                           HasEncoders() ? kCentering + 1 : kResolution + 1)),
      analog_rows_(*grid_, kFirstAnalogRow, analog_.Words(), AnalogColumns(inputs)) {
  TitleRows(*grid_, kFirstAnalogRow, analog::Block::kRecords, QStringLiteral("Analog %1"));
  analog_rows_.BuildCells();
  if (HasEncoders()) {
    encoder_rows_.emplace(*grid_, kFirstEncoderRow, encoder_.Words().first(kEncoders),
                          AbsoluteEncoderColumns());
    incremental_row_.emplace(*grid_, kIncrementalRow, encoder_.Words().last(1),
                             EncoderColumns(kSixteenBits));
    encoder_rows_->BuildCells();
    incremental_row_->BuildCells();
    TitleRows(*grid_, kFirstEncoderRow, kEncoders, QStringLiteral("AE SSI %1"));
    grid_->SetText(kIncrementalRow, 0, QStringLiteral("INC CH 1"));
  }
  grid_->SetClickHandler([this](int row, int column) { OnClick(row, column); });
  grid_->SetEndEditHandler(
      [this](int row, int column) { return RowsAt(row).TakeEdit(row, column); });
  DefaultsRoutine();
  grid_->FitColumns();
  Marks().Track(grid_);
}

bool CAnalogChannelsPage::RetrieveRoutine() {
  if (!RetrieveBlock(analog::kRead, analog_)) return false;
  analog_rows_.Show();
  ClearAxesOfChannelsThatAreOff(kFirstAnalogRow, kLastAnalogRow);
  grid_->Redraw();
  if (!HasEncoders()) return true;
  if (!RetrieveBlock(encoder::kRead, encoder_)) return false;
  encoder_rows_->Show();
  incremental_row_->Show();
  ClearAxesOfChannelsThatAreOff(kFirstEncoderRow, kIncrementalRow);
  grid_->Redraw();
  return true;
}

bool CAnalogChannelsPage::UpdateRoutine() {
  analog_rows_.Store();
  for (std::size_t i = 0; i < analog::Block::kRecords; ++i) {
    if (analog_.Get(i, analog::kAxisBits) == 0) analog_.Set(i, analog::kOn, 0);
  }
  if (!UpdateBlock(analog::kWrite, analog_)) return false;
  if (!HasEncoders()) return true;
  encoder_rows_->Store();
  incremental_row_->Store();
  for (std::size_t i = 0; i < encoder::Block::kRecords; ++i) {
    if (encoder_.Get(i, encoder::kAxisBits) == 0) encoder_.Set(i, encoder::kOn, 0);
  }
  encoder_.Set(kIncrementalRecord, encoder::kIncremental, 0);
  return UpdateBlock(encoder::kWrite, encoder_);
}

// A channel that is off is sent without axes.
void CAnalogChannelsPage::ClearAxesOfChannelsThatAreOff(int first_row, int last_row) {
  for (int row = first_row; row <= last_row; ++row) {
    if (grid_->Value(row, kOn) != 0) continue;
    for (int axis = kFirstAxis; axis <= kLastAxis; ++axis) grid_->SetValue(row, axis, 0);
  }
}

GridRows& CAnalogChannelsPage::RowsAt(int row) {
  if (row < kFirstEncoderRow) return analog_rows_;
  return row < kIncrementalRow ? *encoder_rows_ : *incremental_row_;
}

void CAnalogChannelsPage::OnClick(int row, int column) {
  grid_->HighlightRow(row, kClickedRow, kOtherRows);
  if (column >= kFirstAxis && column <= kLastAxis) ClearOtherRows(*grid_, row, column);
  grid_->Redraw();
}

void CAnalogChannelsPage::DefaultsRoutine() {
  for (int row = kFirstAnalogRow; row < grid_->Rows(); ++row) {
    const bool analog_input = row <= kLastAnalogRow;
    GridRows& rows = RowsAt(row);
    rows.SetCode(row, kOn, analog_input ? 1 : 0);
    for (int axis = kFirstAxis; axis <= kLastAxis; ++axis) {
      const bool own = analog_input && axis - kFirstAxis == row - kFirstAnalogRow;
      rows.SetCode(row, axis, own ? 1 : 0);
    }
    rows.SetCode(row, kInvert, 0);
    rows.SetCode(row, kSpike, 0);
    rows.SetCode(row, kFilter, kDefaultFilter);
    rows.SetCode(row, kResolution, row == kIncrementalRow ? kSixteenBits : kTwelveBits);
    rows.SetCode(row, kIncremental, 0);
    rows.SetCode(row, kCentering, 0);
  }
  grid_->Redraw();
}

}  // namespace quillon
