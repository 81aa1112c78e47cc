// SPDX-License-Identifier: MIT
#include "pages/nodes/CNodeConfigPage.h"

#include <QBoxLayout>
#include <QCheckBox>
#include <QDir>
#include <QFileInfo>
#include <QLabel>
#include <QPushButton>
#include <utility>

#include "firmware/NodeStatus.h"
#include "pages/common/ButtonColumn.h"
#include "pages/common/CPathLabel.h"
#include "pages/common/FirmwareFile.h"
#include "pages/common/PressGuard.h"
#include "pages/common/StackRun.h"
#include "pages/nodes/CNodeList.h"

namespace quillon {

using Icon = UserPrompts::Icon;

CNodeConfigPage::CNodeConfigPage(PageContext context, QWidget* parent)
    : QWidget(parent),
      context_(context),
      list_(new CNodeList),
      line_(new QLabel),
      file_(new CPathLabel),
      force_(new QCheckBox(tr("Force update of all nodes."))),
      node_run_(context.link, context.run, *list_,
                {.begun =
                     [this] {
                       // A wish to abort that came too late for the node before is forgotten.
                       if (moment_ == Moment::kStopping) SetMoment(Moment::kRunning);
                     },
                 .skipped = [this] { SetMoment(Moment::kSkipped); }}) {
  const auto columns = LayOutListPage(this, tr("Node Configuration"), list_, line_);
  columns.list->addWidget(file_);
  columns.list->addWidget(force_);
  line_->setAccessibleDescription(tr("What became of the nodes"));
  connect(list_, &CNodeList::Toggled, this, [this](int row) {
    context_.link.table.CheckNode(static_cast<std::size_t>(row), list_->IsChecked(row));
  });
  force_->setToolTip(
      tr("Also programs checked nodes whose firmware is not older than the file's."));
  AddButtons(columns.buttons);
  ShowControls();
  ShowNodes();
}

void CNodeConfigPage::AddButtons(QBoxLayout* column) {
  refresh_button_ = AddButton(column, tr("Refresh"));
  refresh_button_->setToolTip(tr("Asks the board for its nodes and their firmware."));
  program_button_ = AddButton(column, tr("Program"));
  column->addStretch(1);
  load_button_ = AddButton(column, tr("Load..."));
  load_button_->setToolTip(tr("Chooses the KVX file with the firmware for the nodes."));
  auto* const copy_button = AddButton(column, tr("Copy"));
  copy_button->setToolTip(tr("Copies the list and the line below it as text."));
  connect(refresh_button_, &QPushButton::clicked, this, &CNodeConfigPage::OnRefresh);
  connect(program_button_, &QPushButton::clicked, this, &CNodeConfigPage::OnProgram);
  connect(load_button_, &QPushButton::clicked, this, &CNodeConfigPage::OnLoadFile);
  connect(copy_button, &QPushButton::clicked, list_, &CNodeList::CopyAll);
  GuardFromRepeats(program_button_);
}

void CNodeConfigPage::SetMoment(Moment moment) {
  const auto locks = [](Moment at) { return at == Moment::kRunning || at == Moment::kSkipped; };
  const bool locked = locks(std::exchange(moment_, moment));
  ShowControls();
  if (locks(moment) != locked) Q_EMIT PagesLocked(!locked);
}

// What gets enabled comes first: a control that is disabled gives the focus to an enabled one.
void CNodeConfigPage::ShowControls() {
  const bool running = moment_ == Moment::kRunning;
  const bool loaded = moment_ == Moment::kIdle && file_loaded_;
  program_button_->setText(running ? tr("Abort") : tr("Program"));
  program_button_->setToolTip(ProgramTip());
  refresh_button_->setEnabled(!running);
  load_button_->setEnabled(!running);
  force_->setEnabled(loaded);
  program_button_->setEnabled(running || loaded || moment_ == Moment::kStopping);
}

QString CNodeConfigPage::ProgramTip() const {
  switch (moment_) {
    case Moment::kRunning:
      return tr("Stops before the next record. The node can be programmed again.");
    case Moment::kSkipped:
      return tr("A node was skipped: from then on the run goes on to its end.");
    case Moment::kIdle:
      if (!file_loaded_) return tr("Load a file first. Every run needs it loaded anew.");
      break;
    case Moment::kStopping:
      break;
  }
  return tr("Writes the loaded file into the checked nodes, one after the other.");
}

void CNodeConfigPage::ShowLine(const QString& line, bool about_list) {
  line_is_about_list_ = about_list;
  line_->setText(line);
  list_->SetFootLine(line);
}

void CNodeConfigPage::ShowNodes() {
  DeviceTable& table = context_.link.table;
  if (line_is_about_list_) ShowLine({});
  if (!table.IsEmpty() && table.AreCurrentNodesKnown()) {
    return list_->ShowNodes(table.CurrentNodes(), table.CheckedNodes());
  }
  list_->ShowNone();
  if (table.IsEmpty()) return;
  ShowLine(tr("The board has not said yet which nodes it has. Press Refresh."), true);
}

void CNodeConfigPage::RefreshList() {
  if (QueryNodeStatus(context_.link.library, context_.link.table) == NodeStatusAnswer::kNone) {
    ShowLine(list_->RowCount() == 0 ? tr("The board did not answer.")
                                    : tr("The board did not answer. The list is as it was before."),
             true);
    return;
  }
  ShowLine({});
  ShowNodes();
  Q_EMIT NodesChanged();
}

void CNodeConfigPage::OnRefresh() {
  const auto hold = context_.link.gate.TryEnter();
  if (hold && !context_.link.table.IsEmpty()) RefreshList();
}

void CNodeConfigPage::OnLoadFile() {
  const auto hold = context_.link.gate.TryEnter();
  if (!hold || context_.link.table.IsEmpty()) return;
  file_loaded_ = false;
  ShowControls();
  const auto path =
      context_.prompts.OpenFile(this, QStringLiteral("Open"), QStringLiteral("kvx"),
                                QStringLiteral("KVX Files (*.kvx);;All Files (*)"), last_file_);
  if (path) LoadFile(*path);
}

void CNodeConfigPage::LoadFile(const QString& path) {
  last_file_ = path;
  const auto read = ReadNodeFirmwareFile(path, context_.link.table.CurrentRecord().product_id);
  if (const auto* refusal = std::get_if<FileRefusal>(&read)) {
    context_.prompts.Message(this, refusal->text, refusal->caption, Icon::kExclamation);
    return;
  }
  image_ = std::get<KvxImage>(read);
  file_loaded_ = true;
  file_->ShowPath(ShownPath(QDir::toNativeSeparators(QFileInfo(path).absoluteFilePath())));
  const VersionWord version = image_.node_version.value_or(0);
  ShowLine(tr("Node firmware %1: %2")
               .arg(QString::fromStdString(VersionText(version)), DescribeLoaded(image_)));
  ShowControls();
}

void CNodeConfigPage::OnProgram() {
  if (context_.run.IsUnderWay()) return context_.run.StopItem();
  if (context_.link.table.IsEmpty()) return;
  context_.run.Run([this] { Program(); },
                   [this] {
                     if (moment_ == Moment::kRunning) SetMoment(Moment::kStopping);
                   });
}

void CNodeConfigPage::Program() {
  if (image_.device_id != context_.link.table.CurrentRecord().product_id) {
    return context_.prompts.Message(
        this,
        QStringLiteral("An invalid or incompatible file is currently loaded\r\n"
                       "and cannot be used with the current device\r\n\r\n"),
        QStringLiteral("Invalid KVX File!"), Icon::kExclamation);
  }
  SetMoment(Moment::kRunning);
  ShowLine({});
  // The erase keeps the event loop waiting.
  window()->repaint();
  node_run_.Update(image_, force_->isChecked());
  file_loaded_ = false;
  ShowLine(node_run_.Summary(), true);
  SetMoment(Moment::kIdle);
  Q_EMIT NodesChanged();
}

}  // namespace quillon
