// SPDX-License-Identifier: MIT
#include "pages/common/CPageFrame.h"

#include <QBoxLayout>
#include <QEvent>
#include <QGroupBox>
#include <QLabel>
#include <QPushButton>
#include <algorithm>
#include <utility>

#include "pages/common/CButtonRow.h"
#include "res/Icons.h"
#include "widgets/CScrollPane.h"
#include "widgets/CStatusLed.h"

namespace quillon {
namespace {

constexpr int kBlinkMilliseconds = 250;
constexpr int kButtonIconSize = 32;

CStatusLed* AddLamp(CButtonRow& row, const QString& name, QRgb on, QRgb off) {
  auto* const lamp = new CStatusLed(name, LedStyle::kRound);
  lamp->SetColours(on, off);
  row.AddLamp(lamp, new QLabel(name));
  return lamp;
}

}  // namespace

CPageFrame::CPageFrame(const QString& title, QWidget* parent)
    : QWidget(parent), groups_(new QVBoxLayout), body_(AddGroup(title)) {
  auto* const layout = new QVBoxLayout(this);
  // The controls scroll on a small screen; the buttons and the lamps stay.
  auto* const groups = new QWidget;
  groups->setLayout(groups_);
  groups_->setContentsMargins(0, 0, 0, 0);
  layout->addWidget(new CScrollPane(groups), 1);
  line_ = new QLabel;
  line_->setTextFormat(Qt::PlainText);
  // A board's name comes from outside and may be long: it must not decide how wide the window is.
  line_->setWordWrap(true);
  line_->setSizePolicy(QSizePolicy::Ignored, QSizePolicy::Preferred);
  // Not as its name, which screen readers would say in place of the text.
  line_->setAccessibleDescription(tr("Where the values come from"));
  layout->addWidget(line_);
  auto* const row = new CButtonRow;
  layout->addWidget(row);
  FillButtonRow(*row);
}

QBoxLayout* CPageFrame::AddGroup(const QString& title) {
  auto* const group = new QGroupBox(title);
  groups_->addWidget(group);
  return new QVBoxLayout(group);
}

void CPageFrame::FillButtonRow(CButtonRow& row) {
  const auto add = [&](const char* icon, const QString& name, const QString& caption,
                       const QString& tip, auto signal) {
    auto* const button = new QPushButton(Icon(icon), QString());
    button->setIconSize({kButtonIconSize, kButtonIconSize});
    button->setObjectName(name);
    button->setAccessibleName(name);
    button->setAccessibleDescription(caption);
    button->setToolTip(tip);
    connect(button, &QPushButton::clicked, this, signal);
    button->installEventFilter(this);
    buttons_.push_back(button);
    auto* const label = new QLabel(caption);
    label->setToolTip(tip);
    row.AddButton(button, label);
  };
  add("retrieve", tr("Retrieve"), tr("Retrieve device settings."),
      tr("Reads this page's settings from the board. What was edited here is replaced."),
      &CPageFrame::RetrievePressed);
  add("update", tr("Update"), tr("Update device with new settings."),
      tr("Writes this page's settings to the board, which keeps them."),
      &CPageFrame::UpdatePressed);
  add("defaults", tr("Defaults"), tr("Load page defaults."),
      tr("Fills this page with factory settings. The board keeps its own until Update."),
      &CPageFrame::DefaultsPressed);
  busy_ = AddLamp(row, tr("Busy"), qRgb(0, 255, 0), qRgb(0, 125, 0));
  error_ = AddLamp(row, tr("Error"), qRgb(255, 0, 0), qRgb(125, 0, 0));
}

void CPageFrame::showEvent(QShowEvent* event) {
  QWidget::showEvent(event);
  PutButtonsLastInTabOrder();
}

// A page makes its controls after the buttons, which stand below them.
void CPageFrame::PutButtonsLastInTabOrder() {
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

void CPageFrame::NoteRefusal() {
  just_refused_ = true;
  // Posted, so it comes after the event that ended the typing.
  QMetaObject::invokeMethod(
      this, [this] { just_refused_ = false; }, Qt::QueuedConnection);
}

bool CPageFrame::eventFilter(QObject* watched, QEvent* event) {
  const bool used_up =
      event->type() == QEvent::MouseButtonPress && std::exchange(just_refused_, false);
  return used_up || QWidget::eventFilter(watched, event);
}

void CPageFrame::ShowLine(const QString& line) { line_->setText(line); }

void CPageFrame::ShowBusy(bool busy) {
  busy_->SetLit(busy);
  busy_->SetBlinkPeriod(busy ? kBlinkMilliseconds : 0);
  // Nothing else paints while an exchange blocks the thread.
  if (busy) busy_->repaint();
}

void CPageFrame::ShowError(bool error) {
  error_->SetLit(error);
  error_->SetBlinkPeriod(error ? kBlinkMilliseconds : 0);
  // Before an exchange that may take long.
  if (!error) error_->repaint();
}

void CPageFrame::ResetIndicators() {
  ShowBusy(false);
  ShowError(false);
  update();
}

}  // namespace quillon
