// SPDX-License-Identifier: MIT
#include "pages/common/CPageSet.h"

#include "pages/common/CDeviceConfigPage.h"
#include "widgets/CScrollPane.h"

namespace quillon {

CPageSet::CPageSet(PageContext context, BoardFamily family, QWidget* parent)
    : CTabSet(context, parent),
      product_(AnyProductOf(family)),
      config_(new CDeviceConfigPage(context, family)) {
  AddTab("tab-device", tr("Device Configuration"), [this] { return new CScrollPane(config_); });
  Tab(0);
  SetTabReady(0, true, {});
  setTabToolTip(0, tr("What the board is, its firmware, serial number and restart."));
  connect(config_, &CDeviceConfigPage::BoardReported, this, &CPageSet::EnablePages);
  connect(config_, &CDeviceConfigPage::NodesFollowed, this, &CPageSet::EnableTabs);
  connect(config_, &CDeviceConfigPage::RefreshRequested, this, &CPageSet::RefreshRequested);
}

void CPageSet::ShowBoard(std::optional<NodeStatusAnswer> nodes) {
  ShowOrigins();
  config_->ShowDeviceInfo(nodes);
}

void CPageSet::EnablePages(bool flash_mode_active, bool firmware_suits) {
  setCurrentIndex(0);
  EnableTabs(flash_mode_active, firmware_suits);
}

void CPageSet::EnableTabs(bool flash_mode_active, bool firmware_suits) {
  const auto [first, last] = flash_mode_active ? product_.in_flash_mode : product_.in_device_mode;
  const bool any = flash_mode_active || firmware_suits;
  for (int index = 1; index < count(); ++index) {
    SetTabReady(index, any && index >= first && index <= last, WhyNotReady(index));
  }
}

QString CPageSet::WhyNotReady(int index) const {
  const auto [first, last] = product_.in_flash_mode;
  if (index >= first && index <= last) return tr("Needs a board in Flash Mode.");
  if (product_.family == BoardFamily::kNodeSystem) {
    return tr(
        "Needs a board in Device Mode with the firmware release that this version of Quillon "
        "configures, and with no node that needs a firmware update.");
  }
  return tr(
      "Needs a board in Device Mode with the firmware release that this version of Quillon "
      "configures.");
}

}  // namespace quillon
