// SPDX-License-Identifier: MIT
#include "pages/common/CDeviceConfigPage.h"

#include <QBoxLayout>
#include <QDir>
#include <QDropEvent>
#include <QFileInfo>
#include <QMimeData>
#include <QPushButton>
#include <QTimer>
#include <QUrl>
#include <utility>

#include "devlink/DeviceText.h"
#include "pages/common/CDeviceConfigGroup.h"
#include "pages/common/CFlashGroup.h"
#include "pages/common/CFlashProgress.h"
#include "pages/common/CReportText.h"
#include "pages/common/FirmwareFile.h"
#include "pages/common/PressGuard.h"
#include "pages/common/StackRun.h"
#include "pages/common/Vendor.h"

namespace quillon {
namespace {

using Icon = UserPrompts::Icon;

QString IncompatibleText() {
  return QStringLiteral(
             "Incompatible device version detected!\r\n\r\nYou must update the Quillon utility in "
             "order\r\nto configure this device! Visit ") +
         VendorWebSite() + QStringLiteral("\r\nfor software updates.");
}

// For the middle of a sentence.
QString NameOf(const DeviceRecord& board) {
  const QString label = QString::fromStdString(BoardLabel(board)).trimmed();
  return label.startsWith(':') ? QStringLiteral("Board ") + label : label;
}

}  // namespace

CDeviceConfigPage::CDeviceConfigPage(PageContext context, std::uint32_t device_mode, StackRun& run,
                                     QWidget* parent)
    : QWidget(parent),
      context_(context),
      run_(run),
      device_group_(new CDeviceConfigGroup(context, device_mode)),
      flash_group_(new CFlashGroup) {
  auto* const layout = new QVBoxLayout(this);
  layout->addWidget(device_group_, 3);
  layout->addWidget(flash_group_, 2);
  setAcceptDrops(true);
  ConnectButtons();
  ShowControls();
}

void CDeviceConfigPage::ConnectButtons() {
  const auto on_click = [this](QPushButton* button, auto handler) {
    connect(button, &QPushButton::clicked, this, handler);
  };
  connect(device_group_, &CDeviceConfigGroup::RefreshRequested, this,
          &CDeviceConfigPage::RefreshRequested);
  on_click(&flash_group_->ExecuteButton(),
           [this] { device_group_->Restart(RestartButton::kExecute); });
  on_click(&flash_group_->LoadButton(), &CDeviceConfigPage::OnLoadFile);
  on_click(&flash_group_->ProgramButton(), &CDeviceConfigPage::OnProgram);
  GuardFromRepeats(&flash_group_->ProgramButton());
}

void CDeviceConfigPage::ShowDeviceInfo() {
  const auto report = device_group_->ShowBoard();
  flash_group_->Progress().Reset();
  state_.device_present = report.has_value();
  state_.reported_without_file = !state_.file_loaded;
  if (!report) return SetMoment(FlashMoment::kReported);
  const bool too_new = report->fit == FirmwareFit::kTooNew;
  const std::uint16_t product_id = context_.link.table.CurrentRecord().product_id;
  state_.flash_mode_active = report->flash_mode_active;
  state_.firmware_present = report->firmware_present;
  state_.newer_node_system = too_new && FamilyOf(product_id) == BoardFamily::kNodeSystem;
  SetMoment(FlashMoment::kReported);
  Q_EMIT BoardReported(report->flash_mode_active, report->pages_enabled);
  if (too_new) {
    context_.prompts.Message(this, IncompatibleText(),
                             QStringLiteral("Incompatible Version Detected"), Icon::kExclamation);
  }
}

void CDeviceConfigPage::SetMoment(FlashMoment moment) {
  state_.moment = moment;
  ShowControls();
}

FlashBoards CDeviceConfigPage::Boards() const {
  const DeviceTable& table = context_.link.table;
  FlashBoards boards{NameOf(table.CurrentRecord()), run_name_,
                     run_name_.isEmpty() || run_board_ == CurrentBoard(table)};
  if (!boards.same && boards.of_run == boards.selected) {
    boards.of_run = tr("Another board of the same name, %1,").arg(run_name_);
  }
  return boards;
}

void CDeviceConfigPage::ShowControls() {
  const FlashBoards boards = Boards();
  device_group_->ShowControls(state_, boards);
  const std::pair<FlashControl, QWidget*> controls[]{
      {FlashControl::kProgram, &flash_group_->ProgramButton()},
      {FlashControl::kExecute, &flash_group_->ExecuteButton()},
      {FlashControl::kLoad, &flash_group_->LoadButton()},
  };
  for (const auto& [control, widget] : controls) ShowControl(*widget, control, state_, boards);
  flash_group_->ProgramButton().setText(state_.moment == FlashMoment::kRunning ? tr("Abort")
                                                                               : tr("Program"));
}

void CDeviceConfigPage::showEvent(QShowEvent* event) {
  ShowControls();
  QWidget::showEvent(event);
}

void CDeviceConfigPage::OnLoadFile() {
  const auto hold = context_.link.gate.TryEnter();
  if (!hold || context_.link.table.IsEmpty()) return;
  UnloadFile();
  const auto path = context_.prompts.OpenFile(this, QStringLiteral("Open"), QStringLiteral("kvx"),
                                              QStringLiteral("KVX Files (*.kvx);;All Files (*)"));
  if (path) LoadFile(*path);
}

void CDeviceConfigPage::LoadDropped(const QString& path) {
  const auto hold = context_.link.gate.TryEnter();
  if (!hold || context_.link.table.IsEmpty() || !flash_group_->LoadButton().isEnabled()) return;
  UnloadFile();
  LoadFile(path);
}

// The image stays, but nothing can be done with it. What was done to the board stays true.
void CDeviceConfigPage::UnloadFile() {
  state_.file_loaded = false;
  flash_group_->ShowNoFile();
  ShowControls();
}

void CDeviceConfigPage::LoadFile(const QString& path) {
  const auto read = ReadFirmwareFile(path, context_.link.table.CurrentRecord().product_id);
  if (const auto* refusal = std::get_if<FileRefusal>(&read)) {
    context_.prompts.Message(this, refusal->text, refusal->caption, Icon::kExclamation);
    return;
  }
  image_ = std::get<KvxImage>(read);
  state_.file_loaded = true;
  state_.file_programmed = false;
  flash_group_->ShowFile(QDir::toNativeSeparators(QFileInfo(path).absoluteFilePath()),
                         DescribeLoaded(image_));
  ShowControls();
}

std::optional<QString> CDeviceConfigPage::DroppedFile(const QMimeData* dropped) const {
  const QList<QUrl> urls = dropped->urls();
  if (!flash_group_->LoadButton().isEnabled() || !context_.link.gate.IsOpen()) return std::nullopt;
  if (urls.size() != 1 || !urls.front().isLocalFile()) return std::nullopt;
  const QString path = urls.front().toLocalFile();
  if (!path.endsWith(QStringLiteral(".kvx"), Qt::CaseInsensitive)) return std::nullopt;
  return path;
}

void CDeviceConfigPage::dragEnterEvent(QDragEnterEvent* event) {
  if (DroppedFile(event->mimeData())) event->acceptProposedAction();
}

void CDeviceConfigPage::dropEvent(QDropEvent* event) {
  const auto path = DroppedFile(event->mimeData());
  if (!path) return;
  event->acceptProposedAction();
  // Not here: a message box would keep the program that the file comes from waiting.
  QTimer::singleShot(0, this, [this, path] { LoadDropped(*path); });
}

void CDeviceConfigPage::OnProgram() {
  if (run_.IsUnderWay()) return run_.StopItem();
  if (context_.link.table.IsEmpty()) return;
  const auto program = [this] {
    SetMoment(FlashMoment::kRunning);
    // The erase keeps the event loop waiting.
    window()->repaint();
    RunFlashUpdate();
  };
  run_.Run(program, [this] { OnAbort(); });
}

// The wish may come while the run's last message is open. After a success there is nothing to stop.
void CDeviceConfigPage::OnAbort() {
  if (state_.moment == FlashMoment::kRunning) SetMoment(FlashMoment::kStopped);
}

void CDeviceConfigPage::RunFlashUpdate() {
  auto& [library, table, gate] = context_.link;
  run_board_ = CurrentBoard(table);
  run_name_ = NameOf(table.CurrentRecord());
  state_.file_programmed = false;
  state_.last_run_failed = false;
  switch (FlashUpdate(library, table.CurrentRecord(), image_, *this).Run()) {
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

void CDeviceConfigPage::ShowWrongDevice() {
  context_.prompts.Message(this,
                           QStringLiteral("An invalid or incompatible file is currently loaded\r\n"
                                          "and cannot be used with the current device\r\n\r\n"),
                           QStringLiteral("Invalid KVX File!"), Icon::kExclamation);
  SetMoment(FlashMoment::kReported);
}

void CDeviceConfigPage::ShowCompleted() {
  state_.file_programmed = true;
  SetMoment(FlashMoment::kCompleted);
  context_.prompts.Message(
      this,
      QStringLiteral("Flash update completed successfully!\r\n\r\nYou may click on the Execute "
                     "button to restart the module\r\nin Device Mode."),
      QStringLiteral("Flash Update Complete"), Icon::kInformation);
}

void CDeviceConfigPage::ShowStopped(bool failed) {
  state_.last_run_failed = true;
  if (failed) {
    context_.prompts.Message(this, QStringLiteral("Flash update failed!"),
                             QStringLiteral("Flash Update Fail"), Icon::kExclamation);
  }
  SetMoment(FlashMoment::kStopped);
}

void CDeviceConfigPage::OnText(std::string_view text) {
  flash_group_->Log().Append(QString::fromUtf8(text.data(), static_cast<qsizetype>(text.size())));
  flash_group_->Log().viewport()->repaint();
}

void CDeviceConfigPage::OnProgressRange(int records) { flash_group_->Progress().Begin(records); }

void CDeviceConfigPage::OnProgress(int position) { flash_group_->Progress().Advance(position); }

bool CDeviceConfigPage::AbortRequested() { return run_.IsToStop(); }

void CDeviceConfigPage::Pump() { run_.TurnEventLoop(); }

}  // namespace quillon
