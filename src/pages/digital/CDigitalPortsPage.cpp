// SPDX-License-Identifier: MIT
#include "pages/digital/CDigitalPortsPage.h"

#include <QBoxLayout>
#include <QLabel>

namespace quillon {
namespace {

GridLayout Ports() {
  using enum CellKind;
  return {.columns = {{"on", kImageToggle},
                      {"invert", kCheckBox},
                      {"mode", kCombo},
                      {"encoder", kCombo}},
          .tables = {{"port"}},
          .ground = kPortGround};
}

}  // namespace

CDigitalPortsPage::CDigitalPortsPage(PageContext context, const Page& page, QWidget* parent)
    : CSettingsPage(context, page, tr("Digital Ports Configuration"), parent) {
  auto* const board = new QHBoxLayout;
  Body()->addLayout(board);
  Controls().AddLabelled(board, *Values().Find("board", 1, "master_switch"));
  board->addStretch(1);
  AddGrid(Body(), tr("Digital ports"), Ports())
      ->setSizePolicy(QSizePolicy::Expanding, QSizePolicy::Maximum);
  auto* const note = new QLabel(tr("Note: Only one port can be configured for rotary support."));
  note->setWordWrap(true);
  Body()->addWidget(note);
  Body()->addStretch(1);
}

}  // namespace quillon
