// SPDX-License-Identifier: MIT
#include "pages/common/CPageSet.h"

#include <QVBoxLayout>
#include <algorithm>

#include "pages/common/CDeviceConfigPage.h"
#include "pages/common/CSettingsPage.h"
#include "pages/common/StackRun.h"
#include "pages/common/Vendor.h"
#include "res/Icons.h"
#include "widgets/CScrollPane.h"

namespace quillon {

CPageSet::CPageSet(PageContext context, BoardFamily family, QWidget* parent)
    : QTabWidget(parent),
      context_(context),
      product_(AnyProductOf(family)),
      run_(new StackRun(context.link.gate, this)) {
  setDocumentMode(false);
  AddPage("tab-device", tr("Device Configuration"));
  config_ = new CDeviceConfigPage(context_, product_.device_mode, *run_, widget(0));
  widget(0)->layout()->addWidget(new CScrollPane(config_));
  setTabToolTip(0, tr("What the board is, its firmware, serial number and restart."));
  setTabEnabled(0, true);
  connect(config_, &CDeviceConfigPage::BoardReported, this, &CPageSet::EnablePages);
  connect(config_, &CDeviceConfigPage::RefreshRequested, this, &CPageSet::RefreshRequested);
  connect(run_, &StackRun::Begun, this, &CPageSet::RunStarted);
  connect(run_, &StackRun::Ended, this, &CPageSet::RunEnded);
  connect(this, &QTabWidget::currentChanged, this, &CPageSet::Page);
}

void CPageSet::AddPage(const char* icon, const QString& title, Factory factory) {
  auto* const holder = new QWidget;
  (new QVBoxLayout(holder))->setContentsMargins(0, 0, 0, 0);
  slots_.push_back({std::move(factory)});
  SetPageEnabled(addTab(holder, Icon(icon), title), false);
}

CSettingsPage* CPageSet::Page(int index) {
  if (index < 0 || index >= static_cast<int>(slots_.size())) return nullptr;
  Slot& slot = slots_[static_cast<std::size_t>(index)];
  if (slot.page == nullptr && slot.factory) {
    slot.page = slot.factory();
    widget(index)->layout()->addWidget(slot.page);
  }
  return slot.page;
}

void CPageSet::ShowBoard() {
  for (const Slot& slot : slots_) {
    if (slot.page != nullptr) slot.page->ShowOrigin();
  }
  config_->ShowDeviceInfo();
}

void CPageSet::LoadDeviceDefaults() {
  const auto hold = context_.link.gate.Enter();
  bool failed = false;
  for (int index = 1; index < count(); ++index) {
    CSettingsPage* const page = Page(index);
    if (page == nullptr) continue;
    page->LoadDefaults();
    failed = !page->StoreOnBoard() || failed;
  }
  if (failed) {
    context_.prompts.Message(this, QStringLiteral("Load device defaults settings failed!"),
                             QStringLiteral("Load Defaults"), UserPrompts::Icon::kError);
  }
}

void CPageSet::AbortRun() { run_->StopRun(); }

bool CPageSet::HasSettingsPages() const {
  return std::any_of(slots_.begin(), slots_.end(),
                     [](const Slot& slot) { return static_cast<bool>(slot.factory); });
}

void CPageSet::ResetIndicators() {
  for (const Slot& slot : slots_) {
    if (slot.page != nullptr) slot.page->ResetIndicators();
  }
}

void CPageSet::EnablePages(bool flash_mode_active, bool firmware_suits) {
  const auto [first, last] = flash_mode_active ? product_.in_flash_mode : product_.in_device_mode;
  const bool any = flash_mode_active || firmware_suits;
  setCurrentIndex(0);
  for (int index = 1; index < count(); ++index) {
    SetPageEnabled(index, any && index >= first && index <= last);
  }
}

void CPageSet::SetPageEnabled(int index, bool enabled) {
  const bool exists = static_cast<bool>(slots_[static_cast<std::size_t>(index)].factory);
  setTabEnabled(index, enabled && exists);
  if (!exists) {
    setTabToolTip(index, LaterVersion());
  } else if (enabled) {
    setTabToolTip(index, QString());
  } else {
    setTabToolTip(index, tr("Needs a board in Device Mode with the firmware release that this "
                            "version of Quillon configures."));
  }
}

}  // namespace quillon
