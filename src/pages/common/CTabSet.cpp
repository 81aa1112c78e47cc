// SPDX-License-Identifier: MIT
#include "pages/common/CTabSet.h"

#include <QVBoxLayout>
#include <algorithm>

#include "pages/common/CSettingsPage.h"
#include "res/Icons.h"

namespace quillon {

CTabSet::CTabSet(PageContext context, QWidget* parent) : QTabWidget(parent), context_(context) {
  setDocumentMode(false);
  connect(this, &QTabWidget::currentChanged, this, &CTabSet::Tab);
}

void CTabSet::AddTab(const char* icon, const QString& title, Factory factory) {
  auto* const holder = new QWidget;
  (new QVBoxLayout(holder))->setContentsMargins(0, 0, 0, 0);
  slots_.push_back({std::move(factory)});
  const int index = addTab(holder, Icon(icon), title);
  setTabEnabled(index, false);
  setTabToolTip(index, tr("Needs a board of this family."));
}

QWidget* CTabSet::Tab(int index) {
  if (index < 0 || index >= static_cast<int>(slots_.size())) return nullptr;
  Slot& slot = slots_[static_cast<std::size_t>(index)];
  if (slot.widget == nullptr) {
    slot.widget = slot.factory();
    widget(index)->layout()->addWidget(slot.widget);
  }
  return slot.widget;
}

CSettingsPage* CTabSet::Page(int index) { return qobject_cast<CSettingsPage*>(Tab(index)); }

void CTabSet::SetTabReady(int index, bool ready, const QString& why_not) {
  setTabEnabled(index, ready);
  setTabToolTip(index, ready ? QString() : why_not);
}

void CTabSet::LoadDeviceDefaults() {
  const auto hold = context_.link.gate.Enter();
  bool failed = false;
  for (int index = 0; index < count(); ++index) {
    if (!slots_[static_cast<std::size_t>(index)].settings) continue;
    Page(index)->LoadDefaults();
    failed = !Page(index)->StoreOnBoard() || failed;
  }
  if (failed) {
    context_.prompts.Message(this, QStringLiteral("Load device defaults settings failed!"),
                             QStringLiteral("Load Defaults"), UserPrompts::Icon::kError);
  }
}

template <typename Visit>
void CTabSet::ForEachPage(const Visit& visit) const {
  for (const Slot& slot : slots_) {
    if (auto* const page = qobject_cast<CSettingsPage*>(slot.widget)) visit(*page);
  }
}

void CTabSet::ResetIndicators() {
  ForEachPage([](CSettingsPage& page) { page.ResetIndicators(); });
}

void CTabSet::ShowOrigins() {
  ForEachPage([](CSettingsPage& page) { page.ShowOrigin(); });
}

}  // namespace quillon
