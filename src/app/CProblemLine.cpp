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

// What is said of the rule, by RuleState; %1 is its file.
constexpr const char* kRuleStates[]{
    "is not installed.",
    "is out of date (%1).",
    "is installed (%1). Plug the boards in again while your session is on this computer's screen.",
    "is turned off by %1. An administrator can remove that file, and you can refresh then.",
};

}  // namespace

CProblemLine::CProblemLine(AccessHelp help, QWidget* parent)
    : QFrame(parent),
      help_(std::move(help)),
      text_(new QLabel),
      install_(new QPushButton),
      copy_(new QPushButton(tr("&Copy Command"))) {
  setFrameShape(QFrame::StyledPanel);
  // However long a path in it: it must not decide how wide the window is.
  text_->setSizePolicy(QSizePolicy::Ignored, QSizePolicy::Preferred);
  text_->setWordWrap(true);
  text_->setTextFormat(Qt::PlainText);
  text_->setTextInteractionFlags(Qt::TextSelectableByMouse | Qt::TextSelectableByKeyboard);
  text_->setAccessibleDescription(tr("What keeps boards from working"));  // the name is the text
  install_->setToolTip(
      tr("Puts the rule into /etc/udev/rules.d and applies it to the boards that are plugged in. "
         "Asks for an administrator's password in a window of its own."));
  copy_->setAccessibleName(tr("Copy Command"));
  copy_->setToolTip(tr("Copies a command to the clipboard that installs the rule from a terminal"));
  auto* const pane = new CScrollPane(text_);
  pane->SetMostLines(5);  // the pages need the room
  auto* const layout = new QHBoxLayout(this);
  layout->addWidget(pane, 1);
  for (QPushButton* const button : {install_, copy_}) {
    button->setMinimumWidth(fontMetrics().averageCharWidth() * 24);  // as the pages' buttons
    layout->addWidget(button);
  }
  connect(install_, &QPushButton::clicked, this, &CProblemLine::Install);
  connect(copy_, &QPushButton::clicked, this, &CProblemLine::CopyCommand);
  hide();
}

void CProblemLine::Show(const QString& general, const DeviceTable& table) {
  int unusable = 0;
  bool locked = false;
  for (std::uint32_t i = 0; i < table.Count(); ++i) {
    const auto kind = table.ProblemOf(i).kind;
    if (kind != KVUSB_PROBLEM_NONE) ++unusable;
    locked = locked || kind == KVUSB_PROBLEM_PERMISSION;
  }
  findings_ = general;
  if (unusable > 0)
    findings_ +=
        tr("\nBoards that cannot be used: %1. Point at one in the tree to see why.").arg(unusable);
  Tell(OfferRule(locked && help_.run));
  setVisible(!findings_.isEmpty());
}

QString CProblemLine::OfferRule(bool wanted) {
  const FoundRule rule = wanted ? help_.find_rule() : FoundRule{};
  const bool outdated = rule.state == RuleState::kOutdated;
  install_->setText(outdated ? tr("&Update udev Rule") : tr("&Install udev Rule"));
  install_->setAccessibleName(outdated ? tr("Update udev Rule") : tr("Install udev Rule"));
  for (QPushButton* const button : {install_, copy_})
    button->setVisible(wanted && (outdated || rule.state == RuleState::kMissing));
  if (!wanted) return {};
  return tr("The udev rule that lets whoever sits at this computer open the boards ") +
         tr(kRuleStates[static_cast<std::size_t>(rule.state)])
             .replace("%1", QString::fromStdString(rule.file.string()));
}

void CProblemLine::Install() {
  install_->setEnabled(false);
  Tell(tr("The rule is being installed."));
  QStringList arguments;
  for (const std::string& word : ElevatedArguments()) arguments << QString::fromStdString(word);
  help_.run(arguments, [self = QPointer(this)](const ElevatedResult& result) {
    if (self) self->OnInstallEnded(result);
  });
}

void CProblemLine::OnInstallEnded(const ElevatedResult& result) {
  install_->setEnabled(true);
  const bool done = result.end == ElevatedEnd::kDone;
  QString outcome = done ? tr("The rule is installed.") : tr("The rule was not installed.");
  if (result.end == ElevatedEnd::kFailed) {
    outcome += tr(" Copy the command and run it in a terminal.");
    const QString said = QString::fromStdString(ShownText(result.said.toStdString()));
    if (!said.isEmpty()) outcome += tr(" The system says: %1").arg(said);
  }
  Tell(outcome);
  if (done) emit RuleInstalled();
}

void CProblemLine::CopyCommand() {
  QGuiApplication::clipboard()->setText(QString::fromStdString(CopyableCommand()));
  Tell(
      tr("The command is in the clipboard. Paste it into a terminal and run it, then choose "
         "\"Refresh device list\" in the menu of the tree."));
}

void CProblemLine::Tell(const QString& last) {
  text_->setText((findings_ + '\n' + last).trimmed());
}

}  // namespace quillon
