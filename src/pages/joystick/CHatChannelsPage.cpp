// SPDX-License-Identifier: MIT
#include "pages/joystick/CHatChannelsPage.h"

#include <QBoxLayout>
#include <QLabel>

namespace quillon {
namespace {

GridLayout Hats() {
  return {.columns = {{"on", CellKind::kImageToggle}, {"mode", CellKind::kCombo}},
          .tables = {{"hat"}},
          .ground = kPlainGround};
}

GridLayout Damping() {
  return {
      .columns = {{"damping", CellKind::kCombo}}, .tables = {{"damping"}}, .ground = kPlainGround};
}

}  // namespace

CHatChannelsPage::CHatChannelsPage(PageContext context, const Page& page, QWidget* parent)
    : CSettingsPage(context, page, tr("POV HAT Inputs Configuration"), parent) {
  AddGrid(Body(), tr("HAT channels"), Hats())
      ->setSizePolicy(QSizePolicy::Expanding, QSizePolicy::Maximum);
  auto* const note =
      new QLabel(tr("When configured as \"Digital\" HAT channel inputs will be "
                    "routed to 4 standard digital inputs."));
  note->setWordWrap(true);
  note->setAlignment(Qt::AlignLeft | Qt::AlignTop);
  Body()->addWidget(note);
  if (Values().Find("damping", 1, "damping"))
    AddGrid(AddGroup(tr("DAC Damping (FALCO, ORB)")), tr("DAC damping"), Damping());
}

}  // namespace quillon
