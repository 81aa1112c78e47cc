// SPDX-License-Identifier: MIT
#include "pages/common/CDeviceConfigPage.h"

#include <QDropEvent>
#include <QVBoxLayout>

#include "pages/common/CDeviceConfigGroup.h"
#include "pages/common/CFlashGroup.h"
#include "pages/common/Vendor.h"

namespace quillon {
namespace {

QString IncompatibleText() {
  return QStringLiteral(
             "Incompatible device version detected!\r\n\r\nYou must update the Quillon utility in "
             "order\r\nto configure this device! Visit ") +
         VendorWebSite() + QStringLiteral("\r\nfor software updates.");
}

}  // namespace

CDeviceConfigPage::CDeviceConfigPage(PageContext context, BoardFamily family, QWidget* parent)
    : QWidget(parent),
      context_(context),
      device_group_(new CDeviceConfigGroup(context, family)),
      flash_group_(new CFlashGroup(context)) {
  auto* const layout = new QVBoxLayout(this);
  layout->addWidget(device_group_, 3);
  layout->addWidget(flash_group_, 2);
  setAcceptDrops(true);
  connect(device_group_, &CDeviceConfigGroup::RefreshRequested, this,
          &CDeviceConfigPage::RefreshRequested);
  connect(flash_group_, &CFlashGroup::StateChanged, this, &CDeviceConfigPage::ShowControls);
  connect(flash_group_, &CFlashGroup::ExecuteRequested, device_group_,
          [this] { device_group_->Restart(RestartButton::kExecute); });
  ShowControls();
}

void CDeviceConfigPage::ShowDeviceInfo(std::optional<NodeStatusAnswer> nodes) {
  const auto report = device_group_->ShowBoard(nodes);
  flash_group_->TakeReport(report);
  if (!report) return;
  Q_EMIT BoardReported(report->flash_mode_active, report->pages_enabled);
  if (report->fit == FirmwareFit::kTooNew) {
    context_.prompts.Message(this, IncompatibleText(),
                             QStringLiteral("Incompatible Version Detected"),
                             UserPrompts::Icon::kExclamation);
  }
}

void CDeviceConfigPage::FollowNodes(std::optional<NodeStatusAnswer> answer) {
  const auto report = device_group_->FollowNodes(answer);
  if (report) Q_EMIT NodesFollowed(report->flash_mode_active, report->pages_enabled);
}

// In the order of the page: a control that is disabled gives the focus to the next enabled one.
void CDeviceConfigPage::ShowControls() {
  device_group_->ShowControls(flash_group_->State(), flash_group_->Boards());
  flash_group_->ShowControls();
}

void CDeviceConfigPage::showEvent(QShowEvent* event) {
  ShowControls();
  QWidget::showEvent(event);
}

void CDeviceConfigPage::dragEnterEvent(QDragEnterEvent* event) {
  if (flash_group_->CanTake(*event->mimeData())) event->acceptProposedAction();
}

void CDeviceConfigPage::dropEvent(QDropEvent* event) {
  if (flash_group_->Take(*event->mimeData())) event->acceptProposedAction();
}

}  // namespace quillon
