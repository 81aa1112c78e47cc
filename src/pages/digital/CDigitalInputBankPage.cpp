// SPDX-License-Identifier: MIT
#include "pages/digital/CDigitalInputBankPage.h"

#include <QBoxLayout>
#include <QLabel>

#include "pages/common/PulseWidth.h"
#include "settings/DigitalPortSettings.h"

namespace quillon {
namespace {

constexpr int kSpacing = 16;

GridLayout Inputs() {
  using enum CellKind;
  return {.columns = {{"on", kImageToggle},
                      {"invert", kCheckBox},
                      {"mode", kCombo},
                      {"pulse_width", kNumber, kLargestPulseEntry},
                      {"encoder", kCombo}},
          .tables = {{"input"}},
          .ground = kPairGround};
}

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
  AddGrid(Body(), tr("Digital inputs"), Inputs());
  CDigitalInputBankPage::OnShown();
}

bool CDigitalInputBankPage::Accepts(Cell cell, std::uint32_t code) {
  return Values().SettingOf(cell).id != "pulse_width" ||
         AcceptPulseWidth(code, Context().prompts, this);
}

// Of the bank in the box; the rows are numbered anew only by a retrieve or by defaults.
void CDigitalInputBankPage::OnShown() {
  const int before = static_cast<int>(Values().Code(bank_)) * kInputsOfBank;
  inputs_of_bank_->setText(tr("Inputs %1 to %2").arg(before + 1).arg(before + kInputsOfBank));
}

}  // namespace quillon
