// SPDX-License-Identifier: MIT
#include "pages/joystick/CDigitalChannelsPage.h"

#include <QBoxLayout>
#include <QCheckBox>

#include "pages/common/InputGrid.h"

namespace quillon {

CDigitalChannelsPage::CDigitalChannelsPage(PageContext context, const Page& page, QWidget* parent)
    : CSettingsPage(context, page, tr("Digital Inputs Configuration"), parent) {
  AddGrid(Body(), tr("Digital channels"), InputGrid());
  auto* const scan_matrix = new QCheckBox(tr("Scan matrix mode."));
  Body()->addWidget(scan_matrix);
  if (const auto cell = Values().Find("board", 1, "scan_matrix")) {
    Controls().Bind(scan_matrix, *cell);
  } else {
    scan_matrix->setEnabled(false);
    scan_matrix->setToolTip(tr("This board has no scan matrix mode of its own inputs."));
  }
}

bool CDigitalChannelsPage::Accepts(Cell cell, std::uint32_t code) {
  return AcceptInput(Values().SettingOf(cell), code, Context().prompts, this);
}

}  // namespace quillon
