// SPDX-License-Identifier: MIT
#include "pages/nodes/CIoPortsPage.h"

#include <QBoxLayout>

namespace quillon {
namespace {

GridLayout Ports() {
  using enum CellKind;
  return {.columns = {{"on", kImageToggle}, {"direction", kCombo}, {"mode", kCombo}},
          .tables = {{"port"}},
          .ground = {kLightRow, kLightRow, kClickedRow, kColumnTitles, kRowTitles}};
}

}  // namespace

CIoPortsPage::CIoPortsPage(PageContext context, const Page& page, const QString& title,
                           QWidget* parent)
    : CSettingsPage(context, page, title, parent) {
  AddGrid(Body(), tr("I/O ports"), Ports());
}

bool CIoPortsPage::Skips(NodePort port) const {
  return !Context().link.table.CheckedNodes()[port.node];
}

QString CIoPortsPage::LeftOut() const {
  const DeviceTable& table = Context().link.table;
  QStringList unchecked;
  bool any = false;
  for (const auto& [block, port] : Values().Exchanges()) {
    const QString node = QString::number(port.node + 1);
    any = any || !Skips(port);
    if (!Skips(port) || !table.CurrentNodes()[port.node].IsActive()) continue;
    if (!unchecked.contains(node)) unchecked << node;
  }
  if (unchecked.isEmpty()) return any ? QString() : tr("no node is active");
  const QString clause = unchecked.size() == 1
                             ? tr("node %1 is not checked in Node Configuration")
                             : tr("nodes %1 are not checked in Node Configuration");
  return clause.arg(unchecked.join(QLatin1String(", ")));
}

}  // namespace quillon
