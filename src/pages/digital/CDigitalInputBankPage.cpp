// SPDX-License-Identifier: MIT
#include "pages/digital/CDigitalInputBankPage.h"

#include <QBoxLayout>
#include <QLabel>

#include "pages/common/InputGrid.h"
#include "settings/DigitalPortSettings.h"

namespace quillon {
namespace {

constexpr int kSpacing = 16;

}  // namespace

CDigitalInputBankPage::CDigitalInputBankPage(PageContext context, const Page& page, QWidget* parent)
    : CSettingsPage(context, page, tr("Digital Ports Configuration"), parent),
      bank_(*Values().Find("board", 1, "bank")),
      inputs_of_bank_(new QLabel) {
  auto* const board = new QHBoxLayout;
  Body()->addLayout(board);
  Controls().AddLabelled(board, *Values().Find("board", 1, "master_switch"));
  board->addSpacing(kSpacing);
  Controls().AddLabelled(board, bank_);
  board->addWidget(inputs_of_bank_);
  board->addStretch(1);
  AddGrid(Body(), tr("Digital inputs"), InputGrid());
  CDigitalInputBankPage::OnShown();
}

bool CDigitalInputBankPage::Accepts(Cell cell, std::uint32_t code) {
  return AcceptInput(Values().SettingOf(cell), code, Context().prompts, this);
}

// Of the bank in the box; the rows are numbered anew only by a retrieve or by defaults.
void CDigitalInputBankPage::OnShown() {
  const int before = static_cast<int>(Values().Code(bank_)) * kInputsOfBank;
  inputs_of_bank_->setText(tr("Inputs %1 to %2").arg(before + 1).arg(before + kInputsOfBank));
}

}  // namespace quillon
