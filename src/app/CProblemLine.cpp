// SPDX-License-Identifier: MIT
#include "app/CProblemLine.h"

#include <QBoxLayout>
#include <QClipboard>
#include <QGuiApplication>
#include <QLabel>
#include <QPointer>
#include <QPushButton>

#include "access/InstallCommand.h"
#include "devlink/DeviceText.h"
#include "widgets/CScrollPane.h"

namespace quillon {
namespace {

// How much may be said before it scrolls: the pages need the room.
constexpr int kMostTextLines = 5;
constexpr int kMostOutcomeLines = 3;

QString Tr(const char* text) { return CProblemLine::tr(text); }

QString NameOf(const DeviceRecord& record) {
  const QString label = QString::fromStdString(BoardLabel(record)).trimmed();
  return label.startsWith(':') ? Tr("An unnamed board %1").arg(label) : label;
}

QString Tell(const DeviceRecord& board, const Problem& problem) {
  const QString said = QString::fromStdString(ShownText(problem.sentence));
  return Tr("%1 does not work. %2")
      .arg(NameOf(board), said.isEmpty() ? Tr("The HID library does not say why.") : said);
}

const char* Advise(RuleState state) {
  switch (state) {
    case RuleState::kMissing:
      return "A udev rule that lets whoever sits at this computer open the boards is not "
             "installed. Installing it asks for an administrator's password.";
    case RuleState::kOutdated:
      return "The udev rule that lets whoever sits at this computer open the boards is out of date "
             "(%1). Updating it asks for an administrator's password.";
    case RuleState::kCurrent:
      return "The udev rule that lets whoever sits at this computer open the boards is installed "
             "(%1). Unplug the boards and plug them in again. It does not apply to you while you "
             "are logged in from another computer, or while somebody else's session is on the "
             "screen.";
    case RuleState::kMasked:
      return "The udev rule that lets whoever sits at this computer open the boards is turned off "
             "by the file %1. An administrator can remove that file, and you can refresh then.";
  }
  return "";
}

const char* Outcome(ElevatedEnd end) {
  switch (end) {
    case ElevatedEnd::kDone:
      return "The rule is installed.";
    case ElevatedEnd::kDismissed:
      return "The rule was not installed, as the question for the password was closed.";
    case ElevatedEnd::kNotAuthorised:
      return "The rule was not installed: you were not authorised, or no program could ask for the "
             "password.";
    case ElevatedEnd::kUnavailable:
      return "The rule was not installed, as this system has no pkexec to ask for the password.";
    case ElevatedEnd::kFailed:
      break;
  }
  return "Installing the rule failed.";
}

QString TellEnd(const ElevatedResult& result) {
  QString outcome = Tr(Outcome(result.end));
  const bool chosen = result.end == ElevatedEnd::kDone || result.end == ElevatedEnd::kDismissed;
  if (chosen) return outcome;
  const QString said = QString::fromStdString(ShownText(result.said.toStdString()));
  return outcome + Tr(" Copy the command and run it in a terminal.") +
         (said.isEmpty() ? said : Tr(" The system says: %1").arg(said));
}

QLabel* SelectableText(const QString& purpose) {
  auto* const label = new QLabel;
  // However long a name or a path in it: it must not decide how wide the window is.
  label->setSizePolicy(QSizePolicy::Ignored, QSizePolicy::Preferred);
  label->setWordWrap(true);
  label->setTextFormat(Qt::PlainText);
  label->setTextInteractionFlags(Qt::TextSelectableByMouse | Qt::TextSelectableByKeyboard);
  label->setAccessibleDescription(purpose);  // the name is the text itself
  return label;
}

CScrollPane* PaneOf(QLabel* label, int lines) {
  auto* const pane = new CScrollPane(label);
  pane->SetMostLines(lines);
  return pane;
}

void SetText(QLabel& label, const QString& text) {
  label.setText(text);
  label.setVisible(!text.isEmpty());
}

}  // namespace

CProblemLine::CProblemLine(AccessHelp help, QWidget* parent)
    : QFrame(parent),
      help_(std::move(help)),
      text_(SelectableText(tr("What keeps boards from working"))),
      outcome_(SelectableText(tr("What came of the buttons"))),
      install_(new QPushButton),
      copy_(new QPushButton(tr("&Copy Command"))) {
  setFrameShape(QFrame::StyledPanel);
  copy_->setAccessibleName(tr("Copy Command"));
  copy_->setToolTip(tr("Copies a command to the clipboard that installs the rule from a terminal"));
  auto* const layout = new QVBoxLayout(this);
  layout->addWidget(PaneOf(text_, kMostTextLines));
  auto* const buttons = new QHBoxLayout;
  layout->addLayout(buttons);
  for (QPushButton* const button : {install_, copy_}) {
    button->setMinimumWidth(fontMetrics().averageCharWidth() * 24);  // as the pages' buttons
    buttons->addWidget(button);
  }
  buttons->addWidget(PaneOf(outcome_, kMostOutcomeLines), 1);
  buttons->addStretch();
  connect(install_, &QPushButton::clicked, this, &CProblemLine::Install);
  connect(copy_, &QPushButton::clicked, this, &CProblemLine::CopyCommand);
  UpdateButtons();
  hide();
}

void CProblemLine::Show(const QString& general, const DeviceTable& table) {
  QStringList lines{general};
  int ill = 0;
  bool locked = false;
  for (std::uint32_t i = 0; i < table.Count(); ++i) {
    const Problem& problem = table.ProblemOf(i);
    if (problem.kind == KVUSB_PROBLEM_NONE) continue;
    if (++ill == 1) lines << Tell(table.Record(i), problem);
    locked = locked || problem.kind == KVUSB_PROBLEM_PERMISSION;
  }
  if (ill > 1) lines << tr("More boards do not work: %1. The tree says why of each.").arg(ill - 1);
  lines << Advice(locked);
  lines.removeAll(QString());
  SetText(*text_, lines.join(QLatin1Char('\n')));
  SetText(*outcome_, {});
  UpdateButtons();
  setVisible(!lines.isEmpty());
}

QString CProblemLine::Advice(bool locked) {
  offered_ = locked && help_.run;
  if (!offered_) return {};
  rule_ = help_.find_rule();
  offered_ = rule_.state == RuleState::kMissing || rule_.state == RuleState::kOutdated;
  const QString advice = tr(Advise(rule_.state));
  return rule_.file.empty() ? advice : advice.arg(QString::fromStdString(rule_.file.string()));
}

void CProblemLine::Install() {
  running_ = true;
  UpdateButtons();
  SetText(*outcome_, {});
  QStringList arguments;
  for (const std::string& word : ElevatedArguments()) arguments << QString::fromStdString(word);
  help_.run(arguments, [self = QPointer(this)](const ElevatedResult& result) {
    if (self) self->OnInstallEnded(result);
  });
}

void CProblemLine::OnInstallEnded(const ElevatedResult& result) {
  running_ = false;
  UpdateButtons();
  SetText(*outcome_, TellEnd(result));
  if (result.end == ElevatedEnd::kDone) emit RuleInstalled();
}

void CProblemLine::CopyCommand() {
  QGuiApplication::clipboard()->setText(QString::fromStdString(CopyableCommand()));
  SetText(*outcome_,
          tr("The command is in the clipboard. Paste it into a terminal and run it, then choose "
             "\"Refresh device list\" in the menu of the tree."));
}

void CProblemLine::UpdateButtons() {
  const bool update = rule_.state == RuleState::kOutdated;
  install_->setText(update ? tr("&Update udev Rule") : tr("&Install udev Rule"));
  install_->setAccessibleName(update ? tr("Update udev Rule") : tr("Install udev Rule"));
  install_->setToolTip(running_ ? tr("The rule is being installed. The system may be asking for an "
                                     "administrator's password in a window of its own.")
                                : tr("Puts the rule into /etc/udev/rules.d and applies it to the "
                                     "boards that are plugged in"));
  install_->setEnabled(!running_);
  install_->setVisible(offered_);
  copy_->setVisible(offered_);
}

}  // namespace quillon
