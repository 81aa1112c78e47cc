// SPDX-License-Identifier: MIT
#include "pages/nodes/CExpansionCardPage.h"

#include <QBoxLayout>
#include <QLabel>
#include <QPushButton>
#include <algorithm>

#include "firmware/NodeStatus.h"
#include "pages/common/ButtonColumn.h"
#include "widgets/CCheckList.h"

namespace quillon {
namespace {

enum Column { kCard, kNodes };

constexpr QRgb kAbsent = qRgb(0xE1, 0xE1, 0xE1);
constexpr QRgb kPlugged = qRgb(0xEB, 0xEB, 0xEB);
constexpr QRgb kRefused = qRgb(0xFF, 0xC8, 0xC8);

constexpr const char* kFailure = "Card Address Failure";

// Cards count from 1.
bool IsPlugged(const NodeRecords& nodes, std::size_t card) {
  const auto* const first = nodes.begin() + FirstNodeOf(card);
  return std::any_of(first, first + kCardNodes, [](const NodeRecord& n) { return n.IsActive(); });
}

QString NodesOf(std::size_t card) {
  const std::size_t first = FirstNodeOf(card);
  return QStringLiteral("%1 - %2").arg(first + 1).arg(first + kCardNodes);
}

QString ToolTipOf(int column) {
  return column == kCard ? CExpansionCardPage::tr(
                               "The cards that the board can carry. Those with a node that "
                               "answers are checked.")
                         : CExpansionCardPage::tr("The nodes on the card.");
}

}  // namespace

CExpansionCardPage::CExpansionCardPage(PageContext context, QWidget* parent)
    : QWidget(parent),
      context_(context),
      list_(new CCheckList({tr("Expansion Cards"), tr("Nodes")})),
      line_(new QLabel) {
  auto* const buttons =
      LayOutListPage(this, tr("Expansion Card Configuration"), list_, line_).buttons;
  list_->setAccessibleName(tr("Expansion cards"));
  list_->SetToolTips([](int /*row*/, int column) { return ToolTipOf(column - 1); });
  line_->setAccessibleDescription(tr("Which card can be addressed"));
  auto* const refresh = AddButton(buttons, tr("Refresh"));
  refresh->setToolTip(tr("Asks the board which cards are plugged in."));
  address_button_ = AddButton(buttons, tr("Address"));
  address_button_->setToolTip(
      tr("Gives a new card its address. Once is enough; no other card may be plugged in."));
  buttons->addStretch(1);
  connect(refresh, &QPushButton::clicked, this, &CExpansionCardPage::OnRefresh);
  connect(address_button_, &QPushButton::clicked, this, &CExpansionCardPage::OnAddress);
  ShowCards();
}

void CExpansionCardPage::ShowCards() {
  const DeviceTable& table = context_.link.table;
  card_ = 0;
  if (!table.AreCurrentNodesKnown()) {
    return ShowNoAnswer(tr("The board has not said yet which cards it has. Press Refresh."));
  }
  const NodeRecords& nodes = table.CurrentNodes();
  if (list_->RowCount() == 0) list_->SetRows(kExpansionCards);
  std::size_t found = 0;
  for (std::size_t card = 1; card <= kExpansionCards; ++card) {
    const auto row = static_cast<int>(card) - 1;
    const bool plugged = IsPlugged(nodes, card);
    list_->Write(row, kCard, QStringLiteral("Card %1").arg(card));
    list_->Write(row, kNodes, plugged ? NodesOf(card) : QString());
    list_->Check(row, plugged);
    list_->Paint(row, plugged ? kPlugged : kAbsent);
    if (!plugged) continue;
    card_ = card;
    ++found;
  }
  list_->FitColumns();
  list_->Redraw();
  ShowChoice(found);
}

void CExpansionCardPage::ShowChoice(std::size_t found) {
  if (found != 1) card_ = 0;
  address_button_->setEnabled(found == 1);
  if (found == 1) {
    line_->setText(tr("If card %1 is new, press Address.").arg(card_));
  } else {
    line_->setText(found == 0 ? tr("No expansion card is plugged in.")
                              : tr("To address a new card, unplug the other one and press "
                                   "Refresh."));
  }
}

void CExpansionCardPage::RefreshList() {
  if (QueryNodeStatus(context_.link.library, context_.link.table) != NodeStatusAnswer::kNone) {
    ShowCards();
    return Q_EMIT NodesChanged();
  }
  ShowNoAnswer(card_ == 0
                   ? tr("The board did not answer.")
                   : tr("The board did not answer. Address is for card %1, which was plugged "
                        "in before.")
                         .arg(card_));
}

// Intended: without an answer the button is enabled. It is for the card found before, if any.
void CExpansionCardPage::ShowNoAnswer(const QString& line) {
  list_->SetRows(0);
  list_->Redraw();
  address_button_->setEnabled(true);
  line_->setText(line);
}

void CExpansionCardPage::OnRefresh() {
  const auto hold = context_.link.gate.TryEnter();
  if (hold && !context_.link.table.IsEmpty()) RefreshList();
}

void CExpansionCardPage::OnAddress() {
  auto& [library, table, gate] = context_.link;
  const auto hold = gate.TryEnter();
  if (!hold || table.IsEmpty() || card_ == 0) return;
  const bool all =
      AddressCard(library, table.CurrentRecord(), card_, table.CurrentNodes(),
                  [this](std::size_t /*node*/, AddressResult result) { TellNode(result); });
  using Icon = UserPrompts::Icon;
  if (all) {
    context_.prompts.Message(
        this, QStringLiteral("Expansion card successfully addressed. Restarting device."),
        QStringLiteral("Card Address Success"), Icon::kNone);
  } else {
    if (list_->RowCount() != 0) list_->PaintCell(static_cast<int>(card_) - 1, kCard, kRefused);
    list_->Redraw();
    context_.prompts.Message(this, QStringLiteral("Expansion card addressing failed!"),
                             QLatin1String(kFailure), Icon::kNone);
  }
  Q_EMIT Addressed();
  RefreshList();
}

void CExpansionCardPage::TellNode(AddressResult result) {
  if (result != AddressResult::kNotTransported) return;
  context_.prompts.Message(this, QStringLiteral("HID failed!"), QLatin1String(kFailure),
                           UserPrompts::Icon::kNone);
}

}  // namespace quillon
