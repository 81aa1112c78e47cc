// SPDX-License-Identifier: MIT
#include "pages/nodes/CNodeSystemPageSet.h"

#include <QSignalBlocker>
#include <QTabBar>

#include "firmware/NodeStatus.h"
#include "pages/common/CDeviceConfigPage.h"
#include "pages/nodes/CExpansionCardPage.h"
#include "pages/nodes/CIoPortsPage.h"
#include "pages/nodes/CNodeConfigPage.h"
#include "widgets/CScrollPane.h"

namespace quillon {
namespace {

constexpr int kNodeConfigTab = 1;
constexpr std::array kLockedTabs{0, 2};

}  // namespace

CNodeSystemPageSet::CNodeSystemPageSet(PageContext context, QWidget* parent)
    : CPageSet(context, BoardFamily::kNodeSystem, parent) {
  AddTab("tab-node", tr("Node Configuration"), [this] { return MakeNodeConfig(); });
  AddTab("tab-card", tr("Expansion Card Configuration"), [this] { return MakeExpansionCards(); });
  AddPage<CIoPortsPage>("io_ports", "tab-ports");
  connect(Tab(0)->findChild<CDeviceConfigPage*>(), &CDeviceConfigPage::BoardReported, this,
          &CNodeSystemPageSet::ShowNodes);
}

QWidget* CNodeSystemPageSet::MakeNodeConfig() {
  node_config_ = new CNodeConfigPage(Context());
  connect(node_config_, &CNodeConfigPage::PagesLocked, this, &CNodeSystemPageSet::LockPages);
  connect(node_config_, &CNodeConfigPage::NodesChanged, this, [this] {
    if (cards_ != nullptr) cards_->ShowCards();
    Config().FollowNodes();
  });
  return new CScrollPane(node_config_);
}

QWidget* CNodeSystemPageSet::MakeExpansionCards() {
  cards_ = new CExpansionCardPage(Context());
  connect(cards_, &CExpansionCardPage::Addressed, this, &CNodeSystemPageSet::OnAddressed);
  connect(cards_, &CExpansionCardPage::NodesChanged, this, [this] {
    if (node_config_ != nullptr) node_config_->ShowNodes();
    Config().FollowNodes();
  });
  return new CScrollPane(cards_);
}

void CNodeSystemPageSet::RefreshNodes() {
  auto& [library, table, gate] = Context().link;
  const NodeStatusAnswer answer = QueryNodesUnlessRestarting(library, table);
  if (answer == NodeStatusAnswer::kNone) return;
  ShowNodes();
  Config().FollowNodes(answer);
}

void CNodeSystemPageSet::ShowNodes() {
  if (node_config_ != nullptr) node_config_->ShowNodes();
  if (cards_ != nullptr) cards_->ShowCards();
}

void CNodeSystemPageSet::OnAddressed() {
  Tab(kNodeConfigTab);
  // The cards are asked for next; until then the one that failed keeps its colour.
  const QSignalBlocker blocker(node_config_);
  node_config_->RefreshList();
}

// The page of the run is one of the pages that cannot be chosen then, but its "Abort" must stay
// enabled, so its tab is disabled with the whole bar.
void CNodeSystemPageSet::LockPages(bool locked) {
  tabBar()->setEnabled(!locked);
  for (std::size_t i = 0; i < kLockedTabs.size(); ++i) {
    if (locked) unlocked_[i] = isTabEnabled(kLockedTabs[i]);
    setTabEnabled(kLockedTabs[i], !locked && unlocked_[i]);
  }
}

}  // namespace quillon
