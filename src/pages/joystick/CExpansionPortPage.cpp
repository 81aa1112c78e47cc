// SPDX-License-Identifier: MIT
#include "pages/joystick/CExpansionPortPage.h"

#include <QBoxLayout>
#include <QCheckBox>
#include <QComboBox>
#include <QGroupBox>
#include <QLabel>

#include "widgets/CStatusLed.h"

namespace quillon {
namespace {

const QString kDisplay = QStringLiteral("Character LCD 20 x 4");

}  // namespace

CExpansionPortPage::CExpansionPortPage(PageContext context, const Page& page, QWidget* parent)
    : CSettingsPage(context, page, tr("Expansion Port Configuration"), parent) {
  BuildPort(*Values().Find("port", 1, "active"));
  BuildModule(*Values().Find("port", 1, "module"));
  if (module_->findText(kDisplay) >= 0) BuildDisplayAdvice();
  Body()->addStretch(1);
  CExpansionPortPage::OnShown();
}

void CExpansionPortPage::BuildPort(Cell active) {
  auto* const port = new QHBoxLayout;
  Body()->addLayout(port);
  lamp_ = new CStatusLed(tr("Expansion port"), LedStyle::kRound);
  lamp_->SetColours(qRgb(0, 255, 0), qRgb(150, 150, 150));
  port->addWidget(lamp_);
  active_ = new QCheckBox(tr("Activate Expansion Port."));
  Controls().Bind(active_, active);
  port->addWidget(active_);
  port->addStretch(1);
}

void CExpansionPortPage::BuildModule(Cell module) {
  auto* const row = new QHBoxLayout;
  Body()->addLayout(row);
  auto* const label = new QLabel(tr("Module :"));
  row->addWidget(label);
  module_ = new QComboBox;
  module_->setAccessibleName(tr("Module in the expansion port"));
  Controls().Bind(module_, module);
  label->setBuddy(module_);
  row->addWidget(module_);
  row->addStretch(1);
}

void CExpansionPortPage::BuildDisplayAdvice() {
  auto* const group = new QGroupBox(kDisplay + QStringLiteral(" mode"));
  auto* const layout = new QVBoxLayout(group);
  auto* const advice = new QLabel(
      QStringLiteral("You must use a self powered USB HUB that can deliver 500mA per port or the "
                     "module may fail enumeration."));
  advice->setWordWrap(true);
  layout->addWidget(advice);
  Body()->addWidget(group);
}

void CExpansionPortPage::OnShown() {
  lamp_->SetLit(active_->isChecked());
  module_->setEnabled(active_->isChecked());
}

}  // namespace quillon
