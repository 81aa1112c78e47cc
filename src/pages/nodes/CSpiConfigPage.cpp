// SPDX-License-Identifier: MIT
#include "pages/nodes/CSpiConfigPage.h"

#include <QBoxLayout>
#include <QLabel>

namespace quillon {
namespace {

constexpr int kSpacing = 16;

GridLayout Channels() {
  return {.columns = {{"damping", CellKind::kCombo}, {"spi_mode", CellKind::kCombo}},
          .tables = {{"channel"}},
          .ground = kTitledGround};
}

}  // namespace

CSpiConfigPage::CSpiConfigPage(PageContext context, const Page& page, QWidget* parent)
    : CSettingsPage(context, page, tr("SPI Configuration"), parent) {
  auto* const row = new QHBoxLayout;
  Body()->addLayout(row);
  row->setSpacing(kSpacing);
  AddGrid(row, tr("SPI channels"), Channels())
      ->setSizePolicy(QSizePolicy::Maximum, QSizePolicy::Maximum);
  auto* const help = new QLabel(
      tr("SPI Mode:\nMORVA-XY set to \"CS Line HIGH\"\nTARN20-XY set to \"CS Line LOW\"\n"
         "KESTREL-XY set to \"CS Line LOW\"\nOSSEL9 set to \"CS Line LOW\""));
  help->setWordWrap(true);
  help->setAlignment(Qt::AlignLeft | Qt::AlignTop);
  row->addWidget(help, 1);
  Body()->addStretch(1);
}

}  // namespace quillon
