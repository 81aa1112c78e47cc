// SPDX-License-Identifier: MIT
#include "pages/common/CSettingsPage.h"

#include <QBoxLayout>
#include <algorithm>

#include "devlink/DeviceText.h"
#include "devlink/Exchange.h"
#include "kvusb/HidPacket.h"

namespace quillon {

CSettingsPage::CSettingsPage(PageContext context, const Page& page, const QString& title,
                             QWidget* parent)
    : CPageFrame(title, parent),
      context_(context),
      sheet_(page),
      controls_(new BoundControls(
          sheet_, [this](Cell cell, std::uint32_t code) { TakeEdit(cell, code); }, this)) {
  connect(this, &CPageFrame::RetrievePressed, this, &CSettingsPage::Retrieve);
  connect(this, &CPageFrame::UpdatePressed, this, &CSettingsPage::Update);
  connect(this, &CPageFrame::DefaultsPressed, this, &CSettingsPage::Defaults);
  connect(controls_, &BoundControls::EntryRefused, this, &CSettingsPage::NoteRefusal);
  ShowOrigin();
}

CSettingsGrid* CSettingsPage::AddGrid(QBoxLayout* layout, const QString& name,
                                      const GridLayout& grid) {
  grids_.push_back(new CSettingsGrid(
      sheet_, grid, [this](Cell cell, std::uint32_t code) { return TakeEdit(cell, code); }));
  grids_.back()->setAccessibleName(name);
  connect(grids_.back(), &CGridCtrl::EntryRefused, this, &CSettingsPage::NoteRefusal);
  layout->addWidget(grids_.back());
  return grids_.back();
}

// Stops at the first exchange that fails; what was exchanged before stays.
template <typename Transfer>
CSettingsPage::Outcome CSettingsPage::RunExchanges(const Transfer& transfer) {
  Outcome outcome;
  if (context_.link.table.IsEmpty()) return {.done = false, .transported = false};
  for (std::size_t i = 0; i < sheet_.Exchanges().size() && outcome.done; ++i) {
    if (Skips(sheet_.Exchanges()[i].port)) continue;
    const TransferResult result = transfer(context_.link.table.CurrentRecord(), i);
    outcome.done = result.IsDone();
    outcome.transported = result.IsTransported();
    outcome.any = outcome.any || result.bytes > 0;
    outcome.all = outcome.all && result.bytes == sheet_.Exchanges()[i].block->bytes;
  }
  return outcome;
}

void CSettingsPage::Retrieve() {
  const auto hold = context_.link.gate.TryEnter();
  // What is being typed must not come back over what is read.
  if (hold && FinishEdits()) RetrieveNow();
}

void CSettingsPage::RetrieveNow() {
  ShowError(false);
  ShowBusy(true);
  const Outcome outcome = RunExchanges([this](DeviceRecord& board, std::size_t i) {
    const auto& [block, port] = sheet_.Exchanges()[i];
    std::vector<std::uint8_t> bytes(block->bytes);
    const auto result = ReadBlock(context_.link.library, board, *block, bytes, port);
    if (!result.IsDone()) return result;
    sheet_.Retrieved(i, bytes);
    ShowSheet();
    return result;
  });
  if (outcome.done) {
    SetOrigin(outcome.any ? Origin::kRetrieved : Origin::kNothing);
  } else {
    ShowError(true);
    if (outcome.any) SetOrigin(Origin::kPartlyRetrieved);
  }
  ShowBusy(false);
}

void CSettingsPage::Update() {
  const auto hold = context_.link.gate.TryEnter();
  if (!hold) return;
  // A number that was refused just now must not look stored.
  if (!FinishEdits()) return;
  if (!sheet_.Of().update_leaves_lamp) ShowError(false);
  ShowBusy(true);
  static_cast<void>(StoreOnBoard());
  ShowBusy(false);
}

// A number that is still being typed is taken over first. False when one was refused.
bool CSettingsPage::FinishEdits() {
  bool kept = controls_->FinishEdits();
  for (CSettingsGrid* const grid : grids_) kept = grid->FinishEdit() && kept;
  return kept;
}

void CSettingsPage::Defaults() {
  const auto hold = context_.link.gate.TryEnter();
  if (!hold || !FinishEdits()) return;
  if (context_.prompts.AskYesNo(
          this,
          QStringLiteral("Are you sure you want to load the\r\ndefault settings for this page?"),
          QStringLiteral("Load Defaults"), UserPrompts::Icon::kQuestion)) {
    LoadDefaults();
  }
}

void CSettingsPage::LoadDefaults() {
  sheet_.LoadFactory();
  for (CSettingsGrid* const grid : grids_) grid->ClearClicked();
  ShowSheet();
}

bool CSettingsPage::StoreOnBoard() {
  sheet_.BeginUpdate();
  const Outcome outcome = RunExchanges([this](DeviceRecord& board, std::size_t i) {
    const auto& [block, port] = sheet_.Exchanges()[i];
    const auto bytes = sheet_.Outgoing(i);
    const auto result = WriteBlock(context_.link.library, board, *block, bytes, port);
    sheet_.Stored(i, bytes, result.bytes);
    return result;
  });
  if (!outcome.done) {
    ShowError(true);
    if (outcome.any) SetOrigin(Origin::kPartlyStored);
  } else {
    if (!sheet_.Of().update_leaves_lamp) ShowError(false);
    const Origin stored = outcome.all ? Origin::kStored : Origin::kPartlyStored;
    SetOrigin(outcome.any ? stored : Origin::kNothing);
  }
  ShowSheet();
  return sheet_.Of().answered_is_done ? outcome.transported : outcome.done;
}

bool CSettingsPage::TakeEdit(Cell cell, std::uint32_t code) {
  if (!Accepts(cell, code)) return false;
  sheet_.Edit(cell, code);
  ShowSheet();
  return true;
}

void CSettingsPage::ShowSheet() {
  for (CSettingsGrid* const grid : grids_) grid->Show();
  controls_->Show();
  OnShown();
  ShowOrigin();
}

bool CSettingsPage::Shows(Cell cell) const {
  return controls_->Shows(cell) || std::ranges::any_of(grids_, [cell](const CSettingsGrid* grid) {
           return grid->Shows(cell);
         });
}

void CSettingsPage::SetPort(int port) {
  BoardIdentity board = CurrentBoard(context_.link.table);
  if (port == port_ && board == board_of_port_) return;
  port_ = port;
  board_of_port_ = std::move(board);
  sheet_.SetPort({.node = static_cast<std::uint8_t>((port - 1) / 2),
                  .half = static_cast<std::uint8_t>((port - 1) % 2)});
  origin_ = Origin::kNone;
  for (CSettingsGrid* const grid : grids_) grid->ClearClicked();
  ShowSheet();
}

void CSettingsPage::SetOrigin(Origin origin) {
  const bool part = origin == Origin::kPartlyRetrieved || origin == Origin::kPartlyStored;
  const BoardIdentity board = CurrentBoard(context_.link.table);
  const bool mixed = part && origin_ != Origin::kNone && origin_board_ != board;
  rest_label_ = mixed ? origin_label_ : QString();
  origin_ = origin;
  origin_board_ = board;
  origin_label_ = SubjectLabel();
  left_out_ = LeftOut();
  ShowOrigin();
}

// What the page is about now.
QString CSettingsPage::SubjectLabel() const {
  QString board = QString::fromStdString(BoardLabel(context_.link.table.CurrentRecord()));
  if (port_ == 0) return board;
  return tr("port %1 of %2").arg(QChar('A' + port_ - 1)).arg(board);
}

void CSettingsPage::ShowOrigin() {
  QString line;
  switch (origin_) {
    case Origin::kNone:
      line = tr("Not retrieved from the board yet.");
      break;
    case Origin::kRetrieved:
      line = tr("Retrieved from %1.").arg(origin_label_);
      break;
    case Origin::kPartlyRetrieved:
      line = tr("Retrieved in part only from %1; the rest is older.").arg(origin_label_);
      break;
    case Origin::kNothing:
      line = tr("Nothing was exchanged with %1: %2.").arg(origin_label_, left_out_);
      break;
    case Origin::kStored:
      line = tr("Stored in %1.").arg(origin_label_);
      break;
    case Origin::kPartlyStored:
      line = tr("Stored in part only in %1; it holds the rest as before.").arg(origin_label_);
      break;
  }
  if (origin_ != Origin::kNone && origin_ != Origin::kNothing && !left_out_.isEmpty())
    line += QLatin1Char(' ') + tr("Something was left out: %1.").arg(left_out_);
  if (!rest_label_.isEmpty())
    line += QLatin1Char(' ') + tr("The rest shown here is that of %1.").arg(rest_label_);
  if (origin_ != Origin::kNone && origin_board_ != CurrentBoard(context_.link.table))
    line += QLatin1Char(' ') + tr("That is not the board selected now.");
  if (const int hidden = sheet_.Hidden(); hidden > 0) {
    line += QLatin1Char(' ') +
            (hidden == 1 ? tr("1 value of the board cannot be shown here.")
                         : tr("%1 values of the board cannot be shown here.").arg(hidden));
  }
  if (sheet_.AnyEdited()) line += QLatin1Char(' ') + tr("Edited since.");
  ShowLine(line);
}

bool CSettingsPage::SendCurrent(std::span<std::uint8_t> packet) {
  auto& [library, table, gate] = context_.link;
  const std::uint8_t command = packet[kCommandByte];
  return !table.IsEmpty() && SendBlock(library, table.CurrentRecord(), packet) &&
         packet[kEchoByte] == command;
}

}  // namespace quillon
