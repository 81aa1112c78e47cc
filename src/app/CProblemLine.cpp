// SPDX-License-Identifier: MIT
#include "app/CProblemLine.h"

#include <QBoxLayout>
#include <QClipboard>
#include <QGuiApplication>
#include <QLabel>
#include <QPointer>
#include <QPushButton>
#include <algorithm>
#include <vector>

#include "access/InstallCommand.h"
#include "devlink/DeviceText.h"
#include "widgets/CScrollPane.h"

namespace quillon {
namespace {

constexpr qsizetype kMostNames = 3;
constexpr std::size_t kMostCauses = 3;
// How much may be said before it scrolls: the pages need the room.
constexpr int kMostTextLines = 5;
constexpr int kMostOutcomeLines = 3;

QString Tr(const char* text) { return CProblemLine::tr(text); }

// Boards with one problem between them, which one sentence tells of.
struct Cause {
  std::int32_t kind;
  QString sentence;  // the library's, where it says the same of all of them
  QStringList boards;
};

QString NameOf(const DeviceRecord& record) {
  const QString label = QString::fromStdString(BoardLabel(record)).trimmed();
  return label.startsWith(':') ? Tr("An unnamed board %1").arg(label) : label;
}

// What the library says of boards that may not be opened or are in use differs by little more than
// the place of each. Other problems are the same only if their sentences are.
std::vector<Cause> CausesIn(const DeviceTable& table) {
  std::vector<Cause> causes;
  for (std::uint32_t i = 0; i < table.Count(); ++i) {
    const Problem& problem = table.ProblemOf(i);
    if (problem.kind == KVUSB_PROBLEM_NONE) continue;
    const bool known =
        problem.kind == KVUSB_PROBLEM_PERMISSION || problem.kind == KVUSB_PROBLEM_IN_USE;
    const std::int32_t kind = known ? problem.kind : KVUSB_PROBLEM_OTHER;
    const QString sentence = QString::fromStdString(ShownText(problem.sentence));
    auto same = std::find_if(causes.begin(), causes.end(), [&](const Cause& cause) {
      return cause.kind == kind && (known || cause.sentence == sentence);
    });
    if (same == causes.end()) same = causes.insert(causes.end(), {kind, sentence, {}});
    if (same->sentence != sentence) same->sentence.clear();
    same->boards << NameOf(table.Record(i));
  }
  return causes;
}

QString Names(const QStringList& boards) {
  const qsizetype count = boards.size();
  if (count == 1) return boards.front();
  if (count > kMostNames) {
    return Tr("%1 and %2 more")
        .arg(boards.first(kMostNames).join(QStringLiteral(", ")),
             QString::number(count - kMostNames));
  }
  return Tr("%1 and %2").arg(boards.first(count - 1).join(QStringLiteral(", ")), boards.back());
}

QString Tell(const Cause& cause) {
  const bool one = cause.boards.size() == 1;
  const auto told = [&](const char* frame, const char* of_one, const char* of_many) {
    return Tr(frame).arg(Names(cause.boards),
                         cause.sentence.isEmpty() ? Tr(one ? of_one : of_many) : cause.sentence);
  };
  switch (cause.kind) {
    case KVUSB_PROBLEM_PERMISSION:
      return told("%1 cannot be used. %2", "This system does not let you open it.",
                  "This system does not let you open them.");
    case KVUSB_PROBLEM_IN_USE:
      return told("%1 cannot be used. %2 Close that program, then refresh.",
                  "Another program is using it.", "Another program is using them.");
    default:
      return told(one ? "%1 has a problem. %2" : "%1 have a problem. %2",
                  "The HID library does not say which.", "The HID library does not say which.");
  }
}

// What the buttons can help with comes last, right above them.
QStringList TellAll(std::vector<Cause> causes) {
  const auto of_kind = [&](std::int32_t kind) {
    std::vector<Cause> found;
    std::copy_if(causes.begin(), causes.end(), std::back_inserter(found),
                 [kind](const Cause& cause) { return cause.kind == kind; });
    return found;
  };
  QStringList lines;
  const std::vector<Cause> others = of_kind(KVUSB_PROBLEM_OTHER);
  qsizetype untold = 0;
  for (std::size_t i = 0; i < others.size(); ++i) {
    if (i < kMostCauses) {
      lines << Tell(others[i]);
    } else {
      untold += others[i].boards.size();
    }
  }
  if (untold > 0) {
    lines << Tr("More boards have problems: %1. The tree says which, board by board.").arg(untold);
  }
  for (const auto kind : {KVUSB_PROBLEM_IN_USE, KVUSB_PROBLEM_PERMISSION}) {
    for (const Cause& cause : of_kind(kind)) lines << Tell(cause);
  }
  return lines;
}

bool HasLockedBoard(const std::vector<Cause>& causes) {
  return std::any_of(causes.begin(), causes.end(),
                     [](const Cause& cause) { return cause.kind == KVUSB_PROBLEM_PERMISSION; });
}

QString Advise(const FoundRule& rule) {
  const QString file = QString::fromStdString(rule.file.string());
  switch (rule.state) {
    case RuleState::kMissing:
      return Tr(
          "A udev rule that lets whoever sits at this computer open the boards is not "
          "installed. Install it here, or copy a command that does it in a terminal. Either "
          "asks for an administrator's password.");
    case RuleState::kOutdated:
      return Tr("The udev rule that lets whoever sits at this computer open the boards is out of "
                "date (%1). Update it here, or copy a command that does it in a terminal. Either "
                "asks for an administrator's password.")
          .arg(file);
    case RuleState::kCurrent:
      return Tr("The udev rule that lets whoever sits at this computer open the boards is "
                "installed (%1). Unplug the boards and plug them in again. It does not apply to "
                "you "
                "while you are logged in from another computer, or while somebody else's session "
                "is on the screen.")
          .arg(file);
    case RuleState::kMasked:
      return Tr("The udev rule that lets whoever sits at this computer open the boards is turned "
                "off by the file %1. An administrator can remove that file, and you can refresh "
                "then.")
          .arg(file);
  }
  return {};
}

QString TellEnd(const ElevatedResult& result) {
  const QString said = QString::fromStdString(ShownText(result.said.toStdString()));
  const QString reason = said.isEmpty()
                             ? said
                             : Tr(" The system says: %1.")
                                   .arg(said.endsWith(QLatin1Char('.')) ? said.chopped(1) : said);
  switch (result.end) {
    case ElevatedEnd::kDone:
      return Tr("The rule is installed.");
    case ElevatedEnd::kDismissed:
      return Tr("The rule was not installed, as the question for the password was closed.");
    case ElevatedEnd::kNotAuthorised:
      return Tr("The rule was not installed: you were not authorised, or no program could ask for "
                "the password.%1 Copy the command and run it in a terminal.")
          .arg(reason);
    case ElevatedEnd::kUnavailable:
      return Tr(
          "The rule was not installed, as this system has no pkexec to ask for the "
          "password. Copy the command and run it in a terminal.");
    case ElevatedEnd::kFailed:
      break;
  }
  return Tr("Installing the rule failed.%1 Copy the command and run it in a terminal to see more.")
      .arg(reason);
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
  const std::vector<Cause> causes = CausesIn(table);
  QStringList lines{general};
  lines << TellAll(causes) << Advice(HasLockedBoard(causes));
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
  return Advise(rule_);
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
