// SPDX-License-Identifier: MIT
#include "pages/common/CDeviceConfigGroup.h"

#include <QBoxLayout>
#include <QLabel>
#include <QLineEdit>
#include <QPushButton>
#include <QRegularExpressionValidator>
#include <utility>

#include "firmware/SerialNumber.h"
#include "pages/common/ButtonColumn.h"
#include "pages/common/CReportText.h"

namespace quillon {

CDeviceConfigGroup::CDeviceConfigGroup(PageContext context, BoardFamily family, QWidget* parent)
    : QGroupBox(tr("Device Configuration"), parent),
      context_(context),
      product_(AnyProductOf(family)),
      report_(new CReportText(tr("Report on the board"))) {
  auto* const layout = new QHBoxLayout(this);
  layout->addWidget(report_, 1);
  auto* const column = AddButtonColumn(layout);
  refresh_button_ = AddButton(column, tr("Refresh"));
  flash_button_ = AddButton(column, tr("Flash"));
  device_button_ = AddButton(column, tr("Device"));
  column->addStretch(1);
  AddSerialRow(*column);
  reboot_button_ = AddButton(column, tr("Reboot"));
  ConnectButtons();
}

void CDeviceConfigGroup::AddSerialRow(QBoxLayout& column) {
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
  column.addWidget(box);
}

void CDeviceConfigGroup::ConnectButtons() {
  const auto on_click = [this](QPushButton* button, auto handler) {
    connect(button, &QPushButton::clicked, this, handler);
  };
  on_click(refresh_button_, &CDeviceConfigGroup::RefreshRequested);
  on_click(flash_button_, [this] { Restart(RestartButton::kFlash); });
  on_click(device_button_, [this] { Restart(RestartButton::kDevice); });
  on_click(reboot_button_, [this] { Restart(RestartButton::kReboot); });
  on_click(set_button_, &CDeviceConfigGroup::OnSetSerial);
}

// Nothing in a family whose boards have no nodes.
std::optional<NodeFindings> CDeviceConfigGroup::FindNodes(std::optional<NodeStatusAnswer> known) {
  if (product_.family != BoardFamily::kNodeSystem) return std::nullopt;
  auto& [library, table, gate] = context_.link;
  const auto hold = gate.Enter();
  answer_ = known ? *known : QueryNodesUnlessRestarting(library, table);
  return NodeFindings{answer_, AnyNodeNeedsUpdate(table.CurrentNodes())};
}

std::optional<DeviceReport> CDeviceConfigGroup::FollowNodes(
    std::optional<NodeStatusAnswer> answer) {
  const DeviceTable& table = context_.link.table;
  if (table.IsEmpty()) return std::nullopt;
  answer_ = answer.value_or(answer_);
  DeviceReport report =
      ReportOnDevice(table.CurrentRecord(), table.CurrentType(), product_.device_mode,
                     NodeFindings{answer_, AnyNodeNeedsUpdate(table.CurrentNodes())});
  report_->setPlainText(QString::fromStdString(report.text));
  return report;
}

std::optional<DeviceReport> CDeviceConfigGroup::ShowBoard(std::optional<NodeStatusAnswer> nodes) {
  const DeviceTable& table = context_.link.table;
  if (table.IsEmpty()) {
    report_->setPlainText(
        QString::fromStdString(EmptyDeviceReport(product_.family == BoardFamily::kNodeSystem)));
    serial_box_->clear();
    return std::nullopt;
  }
  DeviceReport report = ReportOnDevice(table.CurrentRecord(), table.CurrentType(),
                                       product_.device_mode, FindNodes(nodes));
  report_->setPlainText(QString::fromStdString(report.text));
  serial_box_->setText(QString::fromStdString(report.serial_number));
  return report;
}

void CDeviceConfigGroup::ShowControls(const FlashPageState& state, const FlashBoards& boards) {
  const std::pair<FlashControl, QWidget*> controls[]{
      {FlashControl::kRefresh, refresh_button_}, {FlashControl::kFlash, flash_button_},
      {FlashControl::kDevice, device_button_},   {FlashControl::kSerial, serial_box_},
      {FlashControl::kSet, set_button_},         {FlashControl::kReboot, reboot_button_},
  };
  for (const auto& [control, widget] : controls) ShowControl(*widget, control, state, boards);
}

void CDeviceConfigGroup::OnSetSerial() {
  auto& [library, table, gate] = context_.link;
  const auto hold = gate.TryEnter();
  if (!hold || table.IsEmpty()) return;
  using Icon = UserPrompts::Icon;
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
void CDeviceConfigGroup::Restart(RestartButton button) {
  auto& [library, table, gate] = context_.link;
  const auto hold = gate.TryEnter();
  if (!hold || table.IsEmpty()) return;
  DeviceRecord& board = table.CurrentRecord();
  SendRestart(library, board,
              RestartCommand(button, table.CurrentType(), ProductOf(board.product_id)));
  table.SetCurrentRestarting();
}

}  // namespace quillon
