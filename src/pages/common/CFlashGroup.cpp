// SPDX-License-Identifier: MIT
#include "pages/common/CFlashGroup.h"

#include <QBoxLayout>
#include <QDir>
#include <QFileInfo>
#include <QMimeData>
#include <QPushButton>
#include <QTimer>
#include <QUrl>

#include "devlink/Products.h"
#include "pages/common/ButtonColumn.h"
#include "pages/common/CFlashProgress.h"
#include "pages/common/CPathLabel.h"
#include "pages/common/CReportText.h"
#include "pages/common/FirmwareFile.h"
#include "pages/common/PressGuard.h"
#include "pages/common/StackRun.h"

namespace quillon {
namespace {

using Icon = UserPrompts::Icon;

}  // namespace

CFlashGroup::CFlashGroup(PageContext context, QWidget* parent)
    : QGroupBox(tr("Flash Update"), parent),
      context_(context),
      run_(context.run),
      log_(new CReportText(tr("Log of the flash update"))),
      file_(new CPathLabel),
      progress_(new CFlashProgress),
      flash_run_(context.link, context.run, *log_, *progress_) {
  auto* const layout = new QHBoxLayout(this);
  auto* const left = new QVBoxLayout;
  layout->addLayout(left, 1);
  left->addWidget(log_, 1);
  left->addWidget(file_);
  left->addWidget(progress_);
  auto* const column = AddButtonColumn(layout);
  program_button_ = AddButton(column, tr("Program"));
  execute_button_ = AddButton(column, tr("Execute"));
  column->addStretch(1);
  load_button_ = AddButton(column, tr("Load..."));
  connect(program_button_, &QPushButton::clicked, this, &CFlashGroup::OnProgram);
  connect(execute_button_, &QPushButton::clicked, this, &CFlashGroup::ExecuteRequested);
  connect(load_button_, &QPushButton::clicked, this, &CFlashGroup::OnLoadFile);
  GuardFromRepeats(program_button_);
  UnloadFile();
}

void CFlashGroup::TakeReport(const std::optional<DeviceReport>& report) {
  progress_->Reset();
  state_.device_present = report.has_value();
  state_.reported_without_file = !state_.file_loaded;
  if (report) {
    const std::uint16_t product_id = context_.link.table.CurrentRecord().product_id;
    state_.flash_mode_active = report->flash_mode_active;
    state_.firmware_present = report->firmware_present;
    state_.newer_node_system =
        report->fit == FirmwareFit::kTooNew && FamilyOf(product_id) == BoardFamily::kNodeSystem;
  }
  SetMoment(FlashMoment::kReported);
}

void CFlashGroup::SetMoment(FlashMoment moment) {
  state_.moment = moment;
  Q_EMIT StateChanged();
}

void CFlashGroup::ShowControls() {
  const FlashBoards boards = Boards();
  ShowControl(*program_button_, FlashControl::kProgram, state_, boards);
  ShowControl(*execute_button_, FlashControl::kExecute, state_, boards);
  ShowControl(*load_button_, FlashControl::kLoad, state_, boards);
  program_button_->setText(state_.moment == FlashMoment::kRunning ? tr("Abort") : tr("Program"));
}

void CFlashGroup::OnLoadFile() {
  const auto hold = context_.link.gate.TryEnter();
  if (!hold || context_.link.table.IsEmpty()) return;
  UnloadFile();
  const auto path =
      context_.prompts.OpenFile(this, QStringLiteral("Open"), QStringLiteral("kvx"),
                                QStringLiteral("KVX Files (*.kvx);;All Files (*)"), {});
  if (path) LoadFile(*path);
}

std::optional<QString> CFlashGroup::FileIn(const QMimeData& dragged) const {
  const QList<QUrl> urls = dragged.urls();
  if (!load_button_->isEnabled() || !context_.link.gate.IsOpen()) return std::nullopt;
  if (urls.size() != 1 || !urls.front().isLocalFile()) return std::nullopt;
  const QString path = urls.front().toLocalFile();
  if (!path.endsWith(QStringLiteral(".kvx"), Qt::CaseInsensitive)) return std::nullopt;
  return path;
}

bool CFlashGroup::Take(const QMimeData& dropped) {
  const auto path = FileIn(dropped);
  if (!path) return false;
  // Not here: a message box would keep the program that the file comes from waiting.
  QTimer::singleShot(0, this, [this, path] { LoadDropped(*path); });
  return true;
}

void CFlashGroup::LoadDropped(const QString& path) {
  const auto hold = context_.link.gate.TryEnter();
  if (!hold || context_.link.table.IsEmpty() || !load_button_->isEnabled()) return;
  UnloadFile();
  LoadFile(path);
}

// The image stays, but nothing can be done with it. What was done to the board stays true.
void CFlashGroup::UnloadFile() {
  state_.file_loaded = false;
  progress_->ShowLoaded(tr("No file is loaded."));
  Q_EMIT StateChanged();
}

void CFlashGroup::LoadFile(const QString& path) {
  const auto read = ReadFirmwareFile(path, context_.link.table.CurrentRecord().product_id);
  if (const auto* refusal = std::get_if<FileRefusal>(&read)) {
    context_.prompts.Message(this, refusal->text, refusal->caption, Icon::kExclamation);
    return;
  }
  image_ = std::get<KvxImage>(read);
  state_.file_loaded = true;
  state_.file_programmed = false;
  const QString shown = ShownPath(QDir::toNativeSeparators(QFileInfo(path).absoluteFilePath()));
  file_->ShowPath(shown);
  log_->setPlainText(QStringLiteral("File : %1 loaded.").arg(QFileInfo(shown).fileName()));
  progress_->ShowLoaded(DescribeLoaded(image_));
  Q_EMIT StateChanged();
}

void CFlashGroup::OnProgram() {
  if (run_.IsUnderWay()) return run_.StopItem();
  if (context_.link.table.IsEmpty()) return;
  run_.Run([this] { Program(); }, [this] { OnAbort(); });
}

// The wish may come while the run's last message is open. After a success there is nothing to stop.
void CFlashGroup::OnAbort() {
  if (state_.moment == FlashMoment::kRunning) SetMoment(FlashMoment::kStopped);
}

void CFlashGroup::Program() {
  SetMoment(FlashMoment::kRunning);
  // The erase keeps the event loop waiting.
  window()->repaint();
  state_.file_programmed = false;
  state_.last_run_failed = false;
  switch (flash_run_.Update(image_)) {
    case FlashResult::kWrongDevice:
      return ShowWrongDevice();
    case FlashResult::kCompleted:
      return ShowCompleted();
    case FlashResult::kAborted:
      return ShowStopped(false);
    case FlashResult::kFailed:
      return ShowStopped(true);
  }
}

void CFlashGroup::ShowWrongDevice() {
  context_.prompts.Message(this,
                           QStringLiteral("An invalid or incompatible file is currently loaded\r\n"
                                          "and cannot be used with the current device\r\n\r\n"),
                           QStringLiteral("Invalid KVX File!"), Icon::kExclamation);
  SetMoment(FlashMoment::kReported);
}

void CFlashGroup::ShowCompleted() {
  state_.file_programmed = true;
  SetMoment(FlashMoment::kCompleted);
  context_.prompts.Message(
      this,
      QStringLiteral("Flash update completed successfully!\r\n\r\nYou may click on the Execute "
                     "button to restart the module\r\nin Device Mode."),
      QStringLiteral("Flash Update Complete"), Icon::kInformation);
}

void CFlashGroup::ShowStopped(bool failed) {
  state_.last_run_failed = true;
  if (failed) {
    context_.prompts.Message(this, QStringLiteral("Flash update failed!"),
                             QStringLiteral("Flash Update Fail"), Icon::kExclamation);
  }
  SetMoment(FlashMoment::kStopped);
}

}  // namespace quillon
