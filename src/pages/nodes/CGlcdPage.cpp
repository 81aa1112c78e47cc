// SPDX-License-Identifier: MIT
#include "pages/nodes/CGlcdPage.h"

#include <QBoxLayout>
#include <QComboBox>
#include <QLabel>

namespace quillon {

CGlcdPage::CGlcdPage(PageContext context, const Page& page, QWidget* parent)
    : CSettingsPage(context, page, tr("GLCD Configuration"), parent) {
  auto* const row = new QHBoxLayout;
  Body()->addLayout(row);
  auto* const label = new QLabel(tr("GLCD Resolution:"));
  row->addWidget(label);
  auto* const resolution = new QComboBox;
  resolution->setAccessibleName(tr("GLCD resolution"));
  Controls().Bind(resolution, *Values().Find("display", 1, "resolution"));
  label->setBuddy(resolution);
  row->addWidget(resolution);
  row->addStretch(1);
  Body()->addStretch(1);
}

}  // namespace quillon
