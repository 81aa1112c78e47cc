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
  return !Context().link.table.CurrentNodes()[port.node].IsActive();
}

}  // namespace quillon
