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

constexpr std::uint32_t kPov = 0;
constexpr std::uint32_t kFalco = 4;
constexpr Field kDampingCode{0, 0, 2};
constexpr std::uint32_t kMid = 2;

// What the mode cells show for the code that a board reports. Not the inverse of what an update
// sends, and intended: boards take 3 for HAT 1's "Incremental" and report it as 2, and "ORB :
// 12-Bit DACs" (5) comes back as "TARN20-XY".
constexpr std::uint32_t kUnchanged = 0xFF;
constexpr std::array<std::uint32_t, 8> kHat1Shown{0, 1, 3, kUnchanged, 4, 6, 6, kUnchanged};
constexpr std::array<std::uint32_t, 8> kHat2Shown{0,      1,          2,          kUnchanged,
                                                  kFalco, kUnchanged, kUnchanged, kUnchanged};

std::vector<Choice> InputModes() {
  return {{QStringLiteral("POV"), kPov}, {QStringLiteral("Digital"), 1}};
}

std::vector<Choice> Hat1Modes() {
  auto modes = InputModes();
  modes.insert(modes.end(), {{QStringLiteral("Incremental"), 3},
                             {QStringLiteral("FALCO"), kFalco},
                             {QStringLiteral("ORB : 12-Bit DACs"), 5},
                             {QStringLiteral("TARN20-XY"), 6}});
  return modes;
}

std::vector<Choice> Hat2Modes() {
  auto modes = InputModes();
  modes.insert(modes.end(),
               {{QStringLiteral("ORB : Shifter Display"), 2}, {QStringLiteral("FALCO"), kFalco}});
  return modes;
}

std::vector<GridColumn> HatColumns(std::vector<Choice> modes, std::span<const std::uint32_t> shown,
                                   const QString& mode_tip) {
  return {{.column = kOn,
           .title = QStringLiteral("ON"),
           .tip = QStringLiteral("Switches the HAT connector on. Default: on."),
           .kind = CellKind::ImageToggle,
           .field = hat::kOn,
           .standard = 1},
          {.column = kMode,
           .title = QStringLiteral("            Mode            "),
           .tip = mode_tip,
           .kind = CellKind::Combo,
           .field = hat::kMode,
           .choices = std::move(modes),
           .shown = shown}};
}

std::vector<GridColumn> FamilyColumns(HatUse use, int hat) {
  if (use == HatUse::kInputsOnly) {
    return HatColumns(InputModes(), {},
                      QStringLiteral("A POV hat switch, or four plain digital inputs. "
                                     "Default: POV."));
  }
  return HatColumns(hat == kHat1 ? Hat1Modes() : Hat2Modes(),
                    hat == kHat1 ? kHat1Shown : kHat2Shown,
                    QStringLiteral("A POV hat switch, four plain digital inputs, or the link to a "
                                   "companion product. FALCO takes both connectors. "
                                   "Default: POV."));
}

std::vector<GridColumn> DampingColumns() {
  return {{.column = kDamping,
           .title = QStringLiteral(" Damping "),
           .tip = QStringLiteral("How strongly the output channel of a FALCO or ORB is damped: "
                                 "OFF, LO, MID or HI. Default: MID."),
           .kind = CellKind::Combo,
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
      hat1_row_(*hat_grid_, kHat1, block_.Words().first(1), FamilyColumns(use, kHat1)),
      hat2_row_(*hat_grid_, kHat2, block_.Words().last(1), FamilyColumns(use, kHat2)) {
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
  hat_grid_->SetEndEditHandler([this](int row, int column) { return OnHatEdit(row, column); });
  auto* const note =
      new QLabel(tr("When configured as \"Digital\" HAT channel inputs will be "
                    "routed to 4 standard digital inputs."));
  note->setWordWrap(true);
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

// A FALCO takes both connectors. One that is left alone, also by what was retrieved, goes at the
// next edit.
void CHatChannelsPage::KeepFalcoOnBoth() {
  const bool falco1 = hat_grid_->Value(kHat1, kMode) == kFalco;
  const bool falco2 = hat_grid_->Value(kHat2, kMode) == kFalco;
  if (falco1 && !falco2) hat1_row_.SetCode(kHat1, kMode, kPov);
  if (falco2 && !falco1) hat2_row_.SetCode(kHat2, kMode, kPov);
  hat_grid_->Redraw();
}

}  // namespace quillon
