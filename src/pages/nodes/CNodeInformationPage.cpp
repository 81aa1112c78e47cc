// SPDX-License-Identifier: MIT
#include "pages/nodes/CNodeInformationPage.h"

#include <QGroupBox>
#include <QVBoxLayout>

#include "firmware/NodeStatus.h"
#include "pages/common/CReportText.h"

namespace quillon {

CNodeInformationPage::CNodeInformationPage(const DeviceTable& table, QWidget* parent)
    : QWidget(parent), table_(table), report_(new CReportText(tr("Report on the node"))) {
  auto* const group = new QGroupBox(tr("Node Configuration"));
  (new QVBoxLayout(group))->addWidget(report_);
  (new QVBoxLayout(this))->addWidget(group);
}

bool CNodeInformationPage::ShowNode(std::size_t node) {
  const NodeRecord& record = table_.CurrentNodes()[node];
  report_->setPlainText(QString::fromStdString(NodeReport(record, node)));
  return !record.UpdateRequired();
}

}  // namespace quillon
