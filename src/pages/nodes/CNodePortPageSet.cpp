// SPDX-License-Identifier: MIT
#include "pages/nodes/CNodePortPageSet.h"

#include "pages/nodes/CDirectOutputPage.h"
#include "pages/nodes/CGlcdPage.h"
#include "pages/nodes/CIoPortPage.h"
#include "pages/nodes/CNodeInformationPage.h"
#include "pages/nodes/CSpiDacPage.h"
#include "settings/NodeSettings.h"

namespace quillon {
namespace {

enum Tab { kInformation, kIoPort };

}  // namespace

CNodePortPageSet::CNodePortPageSet(PageContext context, QWidget* parent)
    : CTabSet(context, parent), information_(new CNodeInformationPage(context.link.table)) {
  AddTab("tab-node", tr("Node Information"), [this] { return information_; });
  CTabSet::Tab(kInformation);
  SetTabReady(kInformation, true, {});
  setTabToolTip(kInformation, tr("What the port's node is, and its firmware."));
  AddPage<CIoPortPage>(*FindPortPage("io_port"), "tab-ports");
  AddPage<CDirectOutputPage>(*FindPortPage("direct_outputs"), "tab-digital");
  AddPage<CGlcdPage>(*FindPortPage("glcd"), "tab-card");
  AddPage<CSpiDacPage>(*FindPortPage("spi_dac"), "tab-spi");
}

void CNodePortPageSet::ShowPort(int port) {
  const auto hold = Context().link.gate.Enter();
  setCurrentIndex(kInformation);
  port_ = port;
  FollowNode();
  ResetIndicators();
  for (int index = kIoPort; index < count(); ++index) Page(index)->SetPort(port);
  Page(kIoPort)->RetrieveNow();
}

void CNodePortPageSet::FollowNode() {
  const bool suits = information_->ShowNode(static_cast<std::size_t>(port_ - 1) / 2);
  for (int index = kIoPort; index < count(); ++index) {
    SetTabReady(index, suits,
                tr("Needs a node with the firmware release that this version of Quillon "
                   "configures."));
  }
}

}  // namespace quillon
