// SPDX-License-Identifier: MIT
#include "pages/joystick/CHatChannelsPage.h"

#include <QBoxLayout>
#include <QLabel>

#include "pages/common/ChannelGrid.h"
#include "pages/common/EditMarks.h"

namespace quillon {
namespace {

enum HatColumn { kOn = 1, kMode, kHatColumns };
enum DampingColumn { kDamping = 1, kDampingColumns };

constexpr int kHat1 = 1;
constexpr int kHat2 = 2;

enum Mode : std::uint32_t { kPov, kDigital, kOrbShifter, kIncremental, kFalco, kOrbDacs, kTarn };
constexpr std::array<const char*, 7> kModeTexts{"POV",         "Digital", "ORB : Shifter Display",
                                                "Incremental", "FALCO",   "ORB : 12-Bit DACs",
                                                "TARN20-XY"};

// What a mode cell shows for each code that is retrieved; kUnchanged leaves the cell as it was. Not
// the inverse of what an update sends, on purpose: HAT 1 sends its incremental input as 3 but shows
// it for a 2, and shows the TARN for a 5, which it sends for the DACs.
constexpr std::uint32_t kUnchanged = 0xFF;
constexpr std::array<std::uint32_t, 8> kHat1Shown{kPov,   kDigital, kIncremental, kUnchanged,
                                                  kFalco, kTarn,    kTarn,        kUnchanged};
constexpr std::array<std::uint32_t, 8> kHat2Shown{kPov,   kDigital,   kOrbShifter, kUnchanged,
                                                  kFalco, kUnchanged, kUnchanged,  kUnchanged};

constexpr Field kDampingCode{0, 0, 2};
constexpr std::uint32_t kMid = 2;

std::vector<GridColumn> HatColumns(std::initializer_list<Mode> modes,
                                   std::span<const std::uint32_t> shown) {
  const bool inputs_only = shown.empty();
  std::vector<Choice> choices;
  for (const Mode mode : modes) choices.push_back({QString(kModeTexts[mode]), mode});
  return {{.column = kOn,
           .title = QStringLiteral("ON"),
           .tip = QStringLiteral("Switches the HAT connector on. Default: on."),
           .kind = CellKind::kImageToggle,
           .field = hat::kOn,
           .standard = 1},
          {.column = kMode,
           .title = QStringLiteral("            Mode            "),
           .tip = inputs_only
                      ? QStringLiteral("A POV hat switch or four plain digital inputs. Default: "
                                       "POV.")
                      : QStringLiteral("A POV hat switch, four plain digital inputs, or what else "
                                       "the connector can be. A FALCO takes both. Default: POV."),
           .kind = CellKind::kCombo,
           .field = hat::kMode,
           .choices = std::move(choices),
           .shown = shown}};
}

std::vector<GridColumn> Hat1Columns(HatUse use) {
  if (use == HatUse::kInputsOnly) return HatColumns({kPov, kDigital}, {});
  return HatColumns({kPov, kDigital, kIncremental, kFalco, kOrbDacs, kTarn}, kHat1Shown);
}

std::vector<GridColumn> Hat2Columns(HatUse use) {
  if (use == HatUse::kInputsOnly) return HatColumns({kPov, kDigital}, {});
  return HatColumns({kPov, kDigital, kOrbShifter, kFalco}, kHat2Shown);
}

std::vector<GridColumn> DampingColumns() {
  return {{.column = kDamping,
           .title = QStringLiteral(" Damping "),
           .tip = QStringLiteral("How strongly the output channel of a FALCO or ORB is damped: "
                                 "OFF, LO, MID or HI. Default: MID."),
           .kind = CellKind::kCombo,
           .field = kDampingCode,
           .choices = {{QStringLiteral("HI"), 3},
                       {QStringLiteral("MID"), kMid},
                       {QStringLiteral("LO"), 1},
                       {QStringLiteral("OFF"), 0}},
           .standard = kMid}};
}

}  // namespace

CHatChannelsPage::CHatChannelsPage(PageContext context, HatUse use, QWidget* parent)
    : CSettingsPage(context, tr("POV HAT Inputs Configuration"), parent),
      use_(use),
      hat_grid_(AddChannelGrid(Body(), tr("HAT channels"), kHat2 + 1, kHatColumns)),
      hat1_row_(*hat_grid_, kHat1, block_.Words().first(1), Hat1Columns(use)),
      hat2_row_(*hat_grid_, kHat2, block_.Words().last(1), Hat2Columns(use)) {
  BuildHats();
  if (HasOutputs()) BuildDamping();
  DefaultsRoutine();
  hat_grid_->FitColumns();
  Marks().Track(hat_grid_);
}

void CHatChannelsPage::BuildHats() {
  TitleRows(*hat_grid_, kHat1, hat::kHats, QStringLiteral("HAT %1"));
  hat1_row_.BuildCells();
  hat2_row_.BuildCells();
  hat_grid_->setSizePolicy(QSizePolicy::Expanding, QSizePolicy::Maximum);
  hat_grid_->SetEndEditHandler([this](int row, int column) { return OnHatEdit(row, column); });
  auto* const note =
      new QLabel(tr("When configured as \"Digital\" HAT channel inputs will be "
                    "routed to 4 standard digital inputs."));
  note->setWordWrap(true);
  note->setAlignment(Qt::AlignLeft | Qt::AlignTop);
  Body()->addWidget(note);
}

void CHatChannelsPage::BuildDamping() {
  damping_grid_ = AddChannelGrid(AddGroup(tr("DAC Damping (FALCO, ORB)")), tr("DAC damping"),
                                 hat::kDampedChannels + 1, kDampingColumns);
  damping_rows_.emplace(*damping_grid_, 1, damping_, DampingColumns());
  TitleRows(*damping_grid_, 1, hat::kDampedChannels, QStringLiteral("CH %1"));
  damping_rows_->BuildCells();
  damping_grid_->SetEndEditHandler([this](int row, int column) {
    const bool taken = damping_rows_->TakeEdit(row, column);
    KeepFalcoOnBoth();
    return taken;
  });
  damping_rows_->ShowDefaults();
  damping_grid_->FitColumns();
  Marks().Track(damping_grid_);
}

bool CHatChannelsPage::RetrieveRoutine() {
  if (!RetrieveBlock(hat::kRead, block_)) return false;
  hat1_row_.Show();
  hat2_row_.Show();
  hat_grid_->Redraw();
  if (HasOutputs()) LoadDamping();
  return true;
}

bool CHatChannelsPage::UpdateRoutine() {
  hat1_row_.Store();
  hat2_row_.Store();
  StoreDamping();
  return UpdateBlock(hat::kWrite, block_);
}

void CHatChannelsPage::DefaultsRoutine() {
  hat1_row_.ShowDefaults();
  hat2_row_.ShowDefaults();
  hat_grid_->Redraw();
  if (!HasOutputs()) return;
  damping_rows_->ShowDefaults();
  damping_grid_->Redraw();
}

void CHatChannelsPage::LoadDamping() {
  for (std::size_t i = 0; i < damping_.size(); ++i) {
    damping_[i] = block_.Get(i / hat::kChannelsPerHat, hat::Damping(i));
  }
  damping_rows_->Show();
  damping_grid_->Redraw();
}

void CHatChannelsPage::StoreDamping() {
  if (HasOutputs()) damping_rows_->Store();
  // A board without outputs gets zeros, whatever it held: damping_ never changes then.
  for (std::size_t i = 0; i < damping_.size(); ++i) {
    block_.Set(i / hat::kChannelsPerHat, hat::Damping(i), damping_[i]);
  }
}

bool CHatChannelsPage::OnHatEdit(int row, int column) {
  GridRows& rows = row == kHat1 ? hat1_row_ : hat2_row_;
  if (!rows.TakeEdit(row, column)) return false;
  if (hat_grid_->Value(row, kMode) == kFalco) {
    hat1_row_.SetCode(kHat1, kMode, kFalco);
    hat2_row_.SetCode(kHat2, kMode, kFalco);
  }
  KeepFalcoOnBoth();
  return true;
}

// A FALCO takes both connectors. If only one of them is set to it, by an edit or by what was
// retrieved, the next edit takes that one away.
void CHatChannelsPage::KeepFalcoOnBoth() {
  const bool falco1 = hat_grid_->Value(kHat1, kMode) == kFalco;
  const bool falco2 = hat_grid_->Value(kHat2, kMode) == kFalco;
  if (falco1 && !falco2) hat1_row_.SetCode(kHat1, kMode, kPov);
  if (falco2 && !falco1) hat2_row_.SetCode(kHat2, kMode, kPov);
  hat_grid_->Redraw();
}

}  // namespace quillon
