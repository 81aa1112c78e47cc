// SPDX-License-Identifier: MIT
#include "pages/common/CDeviceConfigPage.h"

#include <QBoxLayout>
#include <QDir>
#include <QDropEvent>
#include <QFileInfo>
#include <QGroupBox>
#include <QLabel>
#include <QLineEdit>
#include <QMimeData>
#include <QPushButton>
#include <QRegularExpressionValidator>
#include <QTimer>
#include <QUrl>
#include <array>

#include "devlink/DeviceText.h"
#include "firmware/DeviceReport.h"
#include "firmware/SerialNumber.h"
#include "pages/common/ButtonColumn.h"
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
      device_mode_(device_mode),
      run_(run),
      flash_group_(new CFlashGroup) {
  auto* const layout = new QVBoxLayout(this);
  layout->addWidget(BuildReportGroup(), 3);
  layout->addWidget(flash_group_, 2);
  setAcceptDrops(true);
  ConnectButtons();
  ShowControls();
}

QWidget* CDeviceConfigPage::BuildReportGroup() {
  auto* const group = new QGroupBox(tr("Device Configuration"));
  auto* const layout = new QHBoxLayout(group);
  report_ = new CReportText(tr("Report on the board"));
  layout->addWidget(report_, 1);
  auto* const column = AddButtonColumn(layout);
  refresh_button_ = AddButton(column, tr("Refresh"));
  flash_button_ = AddButton(column, tr("Flash"));
  device_button_ = AddButton(column, tr("Device"));
  column->addStretch(1);
  column->addWidget(BuildSerialRow());
  reboot_button_ = AddButton(column, tr("Reboot"));
  return group;
}

QWidget* CDeviceConfigPage::BuildSerialRow() {
  auto* const box = new QWidget;
  auto* const layout = new QVBoxLayout(box);
  layout->setContentsMargins(0, 0, 0, 0);
  auto* const label = new QLabel(tr("Serial number"));
  layout->addWidget(label);
  auto* const row = new QHBoxLayout;
  layout->addLayout(row);
  serial_box_ = new QLineEdit;
  serial_box_->setMaxLength(static_cast<int>(kSerialDigits));
  serial_box_->setValidator(
      new QRegularExpressionValidator(QRegularExpression(QStringLiteral("[0-9]*")), serial_box_));
  serial_box_->setMaximumWidth(fontMetrics().horizontalAdvance(QStringLiteral("0000000")));
  serial_box_->setAccessibleName(tr("Serial number"));
  // Files dropped here are meant for the page.
  serial_box_->setAcceptDrops(false);
  label->setBuddy(serial_box_);
  row->addWidget(serial_box_);
  set_button_ = AddButton(row, tr("Set"));
  return box;
}

void CDeviceConfigPage::ConnectButtons() {
  const auto on_click = [this](QPushButton* button, auto handler) {
    connect(button, &QPushButton::clicked, this, handler);
  };
  on_click(refresh_button_, &CDeviceConfigPage::RefreshRequested);
  on_click(flash_button_, [this] { OnRestart(RestartButton::kFlash); });
  on_click(device_button_, [this] { OnRestart(RestartButton::kDevice); });
  on_click(reboot_button_, [this] { OnRestart(RestartButton::kReboot); });
  on_click(set_button_, &CDeviceConfigPage::OnSetSerial);
  on_click(&flash_group_->ExecuteButton(), [this] { OnRestart(RestartButton::kExecute); });
  on_click(&flash_group_->LoadButton(), &CDeviceConfigPage::OnLoadFile);
  on_click(&flash_group_->ProgramButton(), &CDeviceConfigPage::OnProgram);
  GuardFromRepeats(&flash_group_->ProgramButton());
}

void CDeviceConfigPage::ShowDeviceInfo() {
  const DeviceTable& table = context_.link.table;
  flash_group_->Progress().Reset();
  state_.device_present = !table.IsEmpty();
  state_.reported_without_file = !state_.file_loaded;
  if (table.IsEmpty()) {
    report_->setPlainText(QString::fromStdString(EmptyDeviceReport()));
    serial_box_->clear();
    SetMoment(FlashMoment::kReported);
    return;
  }
  const DeviceReport report =
      ReportOnDevice(table.CurrentRecord(), table.CurrentType(), device_mode_);
  const bool too_new = report.fit == FirmwareFit::kTooNew;
  report_->setPlainText(QString::fromStdString(report.text));
  serial_box_->setText(QString::fromStdString(report.serial_number));
  state_.flash_mode_active = report.flash_mode_active;
  state_.firmware_present = report.firmware_present;
  state_.newer_node_system =
      too_new && FamilyOf(table.CurrentRecord().product_id) == BoardFamily::kNodeSystem;
  SetMoment(FlashMoment::kReported);
  Q_EMIT BoardReported(report.flash_mode_active, report.pages_enabled);
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
  // By FlashControl.
  const std::array<QWidget*, kFlashControls> widgets{refresh_button_,
                                                     flash_button_,
                                                     device_button_,
                                                     serial_box_,
                                                     set_button_,
                                                     reboot_button_,
                                                     &flash_group_->ProgramButton(),
                                                     &flash_group_->ExecuteButton(),
                                                     &flash_group_->LoadButton()};
  const FlashControls controls = FlashControlsFor(state_);
  const FlashBoards boards = Boards();
  for (std::size_t i = 0; i < widgets.size(); ++i) {
    const auto control = static_cast<FlashControl>(i);
    const bool enabled = controls.Has(control);
    widgets[i]->setEnabled(enabled);
    widgets[i]->setToolTip(FlashTip(control, enabled, state_, boards));
  }
  flash_group_->ProgramButton().setText(state_.moment == FlashMoment::kRunning ? tr("Abort")
                                                                               : tr("Program"));
}

void CDeviceConfigPage::showEvent(QShowEvent* event) {
  ShowControls();
  QWidget::showEvent(event);
}

void CDeviceConfigPage::OnSetSerial() {
  auto& [library, table, gate] = context_.link;
  const auto hold = gate.TryEnter();
  if (!hold || table.IsEmpty()) return;
  const auto say = [this](const QString& text, const QString& caption, Icon icon) {
    context_.prompts.Message(this, text, caption, icon);
  };
  switch (SetSerial(library, table.CurrentRecord(), serial_box_->text().toStdString())) {
    case SerialResult::kInvalid:
      say(QStringLiteral("Please enter a valid 3 digit serial number."),
          QStringLiteral("Invalid Serial Number"), Icon::kExclamation);
      break;
    case SerialResult::kRefused:
      say(QStringLiteral("Set serial command failed!"), QStringLiteral("Command Failed"),
          Icon::kExclamation);
      break;
    case SerialResult::kSet:
      say(QStringLiteral("New device serial number successfully set.\r\n\r\n"
                         "Click on the REBOOT button to initialise\r\n"
                         "device with new serial number."),
          QStringLiteral("Serial Number"), Icon::kInformation);
      break;
  }
}

// The board leaves the bus; its notifications bring the new report.
void CDeviceConfigPage::OnRestart(RestartButton button) {
  auto& [library, table, gate] = context_.link;
  const auto hold = gate.TryEnter();
  if (!hold || table.IsEmpty()) return;
  DeviceRecord& board = table.CurrentRecord();
  SendRestart(library, board,
              RestartCommand(button, table.CurrentType(), ProductOf(board.product_id)));
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
