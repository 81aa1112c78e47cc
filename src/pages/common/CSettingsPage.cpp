// SPDX-License-Identifier: MIT
#include "pages/common/CSettingsPage.h"

#include <QBoxLayout>
#include <QEvent>
#include <QGroupBox>
#include <QLabel>
#include <QPushButton>
#include <utility>

#include "devlink/DeviceText.h"
#include "pages/common/CButtonRow.h"
#include "pages/common/CNumberBox.h"
#include "pages/common/EditMarks.h"
#include "res/Icons.h"
#include "widgets/CGridCtrl.h"
#include "widgets/CScrollPane.h"
#include "widgets/CStatusLed.h"

namespace quillon {
namespace {

constexpr int kBlinkMilliseconds = 250;
constexpr int kButtonIconSize = 32;

QString DefaultsQuestion() {
  return QStringLiteral("Are you sure you want to load the\r\ndefault settings for this page?");
}

CStatusLed* AddLamp(CButtonRow& row, const QString& name, QRgb on, QRgb off) {
  auto* const lamp = new CStatusLed(name, LedStyle::kRound);
  lamp->SetColours(on, off);
  row.AddLamp(lamp, new QLabel(name));
  return lamp;
}

}  // namespace

CSettingsPage::CSettingsPage(PageContext context, const QString& title, QWidget* parent)
    : QWidget(parent),
      context_(context),
      groups_(new QVBoxLayout),
      body_(AddGroup(title)),
      marks_(new EditMarks(this)) {
  auto* const layout = new QVBoxLayout(this);
  // The controls scroll on a small screen; the buttons and the lamps stay.
  auto* const groups = new QWidget;
  groups->setLayout(groups_);
  groups_->setContentsMargins(0, 0, 0, 0);
  layout->addWidget(new CScrollPane(groups), 1);
  origin_line_ = new QLabel;
  origin_line_->setTextFormat(Qt::PlainText);
  // A board's name comes from outside and may be long: it must not decide how wide the window is.
  origin_line_->setWordWrap(true);
  origin_line_->setSizePolicy(QSizePolicy::Ignored, QSizePolicy::Preferred);
  // Not as its name, which screen readers would say in place of the text.
  origin_line_->setAccessibleDescription(tr("Where the values come from"));
  layout->addWidget(origin_line_);
  auto* const row = new CButtonRow;
  layout->addWidget(row);
  FillButtonRow(*row);
  connect(marks_, &EditMarks::Changed, this, &CSettingsPage::ShowOrigin);
  connect(marks_, &EditMarks::EntryRefused, this, &CSettingsPage::NoteRefusal);
  ShowOrigin();
}

QBoxLayout* CSettingsPage::AddGroup(const QString& title) {
  auto* const group = new QGroupBox(title);
  groups_->addWidget(group);
  return new QVBoxLayout(group);
}

void CSettingsPage::FillButtonRow(CButtonRow& row) {
  const auto add = [&](const char* icon, const QString& name, const QString& caption,
                       const QString& tip, auto handler) {
    auto* const button = new QPushButton(Icon(icon), QString());
    button->setIconSize({kButtonIconSize, kButtonIconSize});
    button->setObjectName(name);
    button->setAccessibleName(name);
    button->setAccessibleDescription(caption);
    button->setToolTip(tip);
    connect(button, &QPushButton::clicked, this, handler);
    button->installEventFilter(this);
    buttons_.push_back(button);
    auto* const label = new QLabel(caption);
    label->setToolTip(tip);
    row.AddButton(button, label);
  };
  add("retrieve", tr("Retrieve"), tr("Retrieve device settings."),
      tr("Reads this page's settings from the board. What was edited here is replaced."),
      &CSettingsPage::Retrieve);
  add("update", tr("Update"), tr("Update device with new settings."),
      tr("Writes this page's settings to the board, which keeps them."), &CSettingsPage::Update);
  add("defaults", tr("Defaults"), tr("Load page defaults."),
      tr("Fills this page with factory settings. The board keeps its own until Update."),
      &CSettingsPage::Defaults);
  busy_ = AddLamp(row, tr("Busy"), qRgb(0, 255, 0), qRgb(0, 125, 0));
  error_ = AddLamp(row, tr("Error"), qRgb(255, 0, 0), qRgb(125, 0, 0));
}

void CSettingsPage::showEvent(QShowEvent* event) {
  QWidget::showEvent(event);
  PutButtonsLastInTabOrder();
}

// A page makes its controls after the buttons, which stand below them.
void CSettingsPage::PutButtonsLastInTabOrder() {
  QWidget* last = nullptr;
  for (QWidget* next = nextInFocusChain(); next != this; next = next->nextInFocusChain()) {
    const bool stop = (next->focusPolicy() & Qt::TabFocus) && next->focusProxy() == nullptr;
    const bool button = std::find(buttons_.begin(), buttons_.end(), next) != buttons_.end();
    if (isAncestorOf(next) && stop && !button) last = next;
  }
  for (QPushButton* const button : buttons_) {
    if (last != nullptr) setTabOrder(last, button);
    last = button;
  }
}

void CSettingsPage::Retrieve() {
  const auto hold = context_.link.gate.TryEnter();
  if (!hold) return;
  ShowError(false);
  ShowBusy(true);
  accepted_blocks_ = 0;
  if (RetrieveRoutine()) {
    SetOrigin(Origin::kRetrieved);
  } else {
    ShowError(true);
    if (accepted_blocks_ > 0) SetOrigin(Origin::kPartlyRetrieved);
  }
  ShowBusy(false);
}

void CSettingsPage::Update() {
  const auto hold = context_.link.gate.TryEnter();
  if (!hold) return;
  // A number that was refused just now must not look stored.
  if (!FinishEdits()) return;
  ShowError(false);
  ShowBusy(true);
  static_cast<void>(StoreOnBoard());
  ShowBusy(false);
}

// A number that is still being typed is taken over first. False when one was refused.
bool CSettingsPage::FinishEdits() {
  bool kept = true;
  for (auto* const grid : findChildren<CGridCtrl*>()) kept = grid->FinishEdit() && kept;
  for (auto* const box : findChildren<CNumberBox*>()) kept = box->FinishEdit() && kept;
  return kept;
}

void CSettingsPage::NoteRefusal() {
  just_refused_ = true;
  // Posted, so it comes after the event that ended the typing.
  QMetaObject::invokeMethod(
      this, [this] { just_refused_ = false; }, Qt::QueuedConnection);
}

// A press on a button first takes the focus from the field that is being edited, which may refuse
// what was typed. The press is used up then: the user has not seen yet what the field holds now.
bool CSettingsPage::eventFilter(QObject* watched, QEvent* event) {
  const bool used_up =
      event->type() == QEvent::MouseButtonPress && std::exchange(just_refused_, false);
  return used_up || QWidget::eventFilter(watched, event);
}

void CSettingsPage::Defaults() {
  const auto hold = context_.link.gate.TryEnter();
  if (!hold) return;
  if (context_.prompts.AskYesNo(this, DefaultsQuestion(), QStringLiteral("Load Defaults"))) {
    DefaultsRoutine();
  }
}

bool CSettingsPage::StoreOnBoard() {
  const bool stored = UpdateRoutine();
  ShowError(!stored);
  if (stored) SetOrigin(Origin::kStored);
  return stored;
}

void CSettingsPage::ResetIndicators() {
  ShowBusy(false);
  ShowError(false);
  update();
}

void CSettingsPage::SetOrigin(Origin origin) {
  const DeviceTable& table = context_.link.table;
  origin_ = origin;
  origin_board_ = CurrentBoard(table);
  origin_label_ = QString::fromStdString(BoardLabel(table.CurrentRecord()));
  // After half a retrieve the edits are still edits of what was there before.
  if (origin != Origin::kPartlyRetrieved) marks_->TakeBaseline();
  ShowOrigin();
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
    case Origin::kStored:
      line = tr("Stored in %1.").arg(origin_label_);
      break;
  }
  if (origin_ != Origin::kNone && origin_board_ != CurrentBoard(context_.link.table)) {
    line += QLatin1Char(' ') + tr("That is not the board selected now.");
  }
  if (marks_->AnyEdited()) line += QLatin1Char(' ') + tr("Edited since.");
  origin_line_->setText(line);
}

bool CSettingsPage::QueryCurrent(std::span<std::uint8_t> packet) {
  auto& [library, table, gate] = context_.link;
  const std::uint8_t command = packet[kCommandByte];
  return !table.IsEmpty() && QueryBlock(library, table.CurrentRecord(), packet) &&
         packet[kEchoByte] == command;
}

bool CSettingsPage::SendCurrent(std::span<std::uint8_t> packet) {
  auto& [library, table, gate] = context_.link;
  const std::uint8_t command = packet[kCommandByte];
  return !table.IsEmpty() && SendBlock(library, table.CurrentRecord(), packet) &&
         packet[kEchoByte] == command;
}

void CSettingsPage::ShowBusy(bool busy) {
  busy_->SetLit(busy);
  busy_->SetBlinkPeriod(busy ? kBlinkMilliseconds : 0);
  // Nothing else paints while an exchange blocks the thread.
  if (busy) busy_->repaint();
}

void CSettingsPage::ShowError(bool error) {
  error_->SetLit(error);
  error_->SetBlinkPeriod(error ? kBlinkMilliseconds : 0);
}

}  // namespace quillon
