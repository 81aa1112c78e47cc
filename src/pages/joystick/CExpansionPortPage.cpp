// SPDX-License-Identifier: MIT
#include "pages/joystick/CExpansionPortPage.h"

#include <QBoxLayout>
#include <QCheckBox>
#include <QComboBox>
#include <QGroupBox>
#include <QLabel>

#include "pages/common/EditMarks.h"
#include "pages/common/WheelGuard.h"
#include "widgets/CStatusLed.h"

namespace quillon {
namespace {

// In the order of the module codes, which begin with 1.
QStringList ModuleNames(ExpansionModules modules) {
  if (modules == ExpansionModules::kOfScanMatrix) return {"8x6 Scan Matrix", "Zephyr Card"};
  return {"Lumen Card", "Absolute SSI Encoders", "Absolute Tarn Encoders", "Zephyr Card",
          "Character LCD 20 x 4"};
}

}  // namespace

CExpansionPortPage::CExpansionPortPage(PageContext context, ExpansionModules modules,
                                       QWidget* parent)
    : CSettingsPage(context, tr("Expansion Port Configuration"), parent) {
  BuildPort(ModuleNames(modules));
  if (modules == ExpansionModules::kOfFullController) BuildDisplayAdvice();
  Body()->addStretch(1);
  DefaultsRoutine();
  Marks().Track(active_);
  connect(module_, &QComboBox::currentIndexChanged, &Marks(), &EditMarks::Compare);
  Marks().Track(module_, [this] {
    return keeps_unknown_module_ ? QString() : QString::number(module_->currentIndex());
  });
}

void CExpansionPortPage::BuildPort(const QStringList& modules) {
  auto* const port = new QHBoxLayout;
  Body()->addLayout(port);
  lamp_ = new CStatusLed(tr("Expansion port"), LedStyle::kRound);
  lamp_->SetColours(qRgb(0, 255, 0), qRgb(150, 150, 150));
  port->addWidget(lamp_);
  active_ = new QCheckBox(QStringLiteral("Activate Expansion Port."));
  active_->setToolTip(tr("Switches the board's expansion port on. Default: off."));
  connect(active_, &QCheckBox::toggled, this, &CExpansionPortPage::FollowActive);
  port->addWidget(active_);
  port->addStretch(1);

  auto* const row = new QHBoxLayout;
  Body()->addLayout(row);
  auto* const label = new QLabel(tr("Module :"));
  row->addWidget(label);
  module_ = new QComboBox;
  module_->addItems(modules);
  module_->setAccessibleName(tr("Module in the expansion port"));
  module_->setToolTip(tr("Tells the board which module is plugged into its expansion port. "
                         "Default: %1.")
                          .arg(modules.front()));
  GuardFromWheel(module_);
  // Choosing the entry that is shown is a choice too.
  connect(module_, &QComboBox::activated, this, [this] { KeepUnknownModule(false); });
  connect(module_, &QComboBox::currentIndexChanged, this, &CExpansionPortPage::WarnOfReplacement);
  label->setBuddy(module_);
  row->addWidget(module_);
  row->addStretch(1);

  unknown_ = new QLabel;
  unknown_->setWordWrap(true);
  Body()->addWidget(unknown_);
  replacement_ = new QLabel;
  replacement_->setWordWrap(true);
  replacement_->hide();
  Body()->addWidget(replacement_);
}

void CExpansionPortPage::BuildDisplayAdvice() {
  auto* const group = new QGroupBox(QStringLiteral("Character LCD 20 x 4 mode"));
  auto* const layout = new QVBoxLayout(group);
  auto* const advice = new QLabel(
      QStringLiteral("You must use a self powered USB HUB that can deliver 500mA per port or the "
                     "module may fail enumeration."));
  advice->setWordWrap(true);
  layout->addWidget(advice);
  Body()->addWidget(group);
}

void CExpansionPortPage::FollowActive(bool active) {
  lamp_->SetLit(active);
  module_->setEnabled(active);
  WarnOfReplacement();
}

void CExpansionPortPage::KeepUnknownModule(bool keep) {
  keeps_unknown_module_ = keep;
  unknown_->setVisible(keep);
  unknown_->setText(tr("The board holds the module code %1, which is not in the list. It is kept "
                       "until a module is chosen.")
                        .arg(block_.Get(0, expansion::kModule)));
  WarnOfReplacement();
  Marks().Compare();
}

std::uint32_t CExpansionPortPage::ModuleToSend() const {
  const int index = module_->currentIndex();
  const bool listed = index >= 0 && !keeps_unknown_module_;
  return listed ? static_cast<std::uint32_t>(index) + 1 : block_.Get(0, expansion::kModule);
}

QString CExpansionPortPage::NameOf(std::uint32_t module) const {
  const bool listed = module >= 1 && module <= static_cast<std::uint32_t>(module_->count());
  return listed ? module_->itemText(static_cast<int>(module) - 1) : tr("code %1").arg(module);
}

// While the port is off nobody chooses a module, but an update sends one all the same.
void CExpansionPortPage::WarnOfReplacement() {
  const std::uint32_t sent = ModuleToSend();
  const bool unasked = held_unseen_ || !active_->isChecked();
  const bool replaced = unasked && held_module_.value_or(sent) != sent;
  replacement_->setVisible(replaced);
  if (!replaced) return;
  replacement_->setText(tr("The board held the module %1. Update replaces it by %2.")
                            .arg(NameOf(*held_module_), NameOf(sent)));
}

bool CExpansionPortPage::RetrieveRoutine() {
  if (!RetrieveBlock(expansion::kRead, block_)) return false;
  const bool active = block_.Get(0, expansion::kActive) != 0;
  const int index = static_cast<int>(block_.Get(0, expansion::kModule)) - 1;
  const bool known = index >= 0 && index < module_->count();
  held_module_ = block_.Get(0, expansion::kModule);
  held_unseen_ = !active;
  active_->setChecked(active);
  // Intended: the list stays as it is while the port is off, and an update then sends what it
  // shows. The page says so before.
  if (active && known) module_->setCurrentIndex(index);
  KeepUnknownModule(active && !known);
  return true;
}

bool CExpansionPortPage::UpdateRoutine() {
  block_.Set(0, expansion::kActive, active_->isChecked() ? 1 : 0);
  block_.Set(0, expansion::kUnused, 0);
  block_.Set(0, expansion::kModule, ModuleToSend());
  if (!UpdateBlock(expansion::kWrite, block_)) return false;
  held_module_ = ModuleToSend();
  held_unseen_ = false;
  WarnOfReplacement();
  return true;
}

void CExpansionPortPage::DefaultsRoutine() {
  active_->setChecked(false);
  FollowActive(false);
  module_->setCurrentIndex(0);
  KeepUnknownModule(false);
}

}  // namespace quillon
