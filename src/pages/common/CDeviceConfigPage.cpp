// SPDX-License-Identifier: MIT
#include "pages/common/CDeviceConfigPage.h"

#include <QApplication>
#include <QBoxLayout>
#include <QGroupBox>
#include <QLabel>
#include <QLineEdit>
#include <QPlainTextEdit>
#include <QProgressBar>
#include <QPushButton>

#include "firmware/DeviceReport.h"
#include "pages/common/Vendor.h"
#include "widgets/Tone.h"

namespace quillon {
namespace {

constexpr QRgb kTextGround = qRgb(0xD2, 0xD2, 0xD2);

QString IncompatibleText() {
  return QStringLiteral(
             "Incompatible device version detected!\r\n\r\nYou must update the Quillon utility in "
             "order\r\nto configure this device! Visit ") +
         VendorWebSite() + QStringLiteral("\r\nfor software updates.");
}

// A read-only text on the grey ground of reports and logs.
class CReportText : public QPlainTextEdit {
 public:
  explicit CReportText(const QString& name) {
    setReadOnly(true);
    setTabChangesFocus(true);
    setAccessibleName(name);
    Tint();
  }

 protected:
  void changeEvent(QEvent* event) override {
    if (event->type() == QEvent::ApplicationPaletteChange) Tint();
    QPlainTextEdit::changeEvent(event);
  }

 private:
  void Tint() {
    QPalette tinted;
    tinted.setColor(QPalette::Base, ToneFor(kTextGround, tinted));
    setPalette(tinted);
  }
};

// The buttons of both groups stand in columns of one width.
QBoxLayout* AddButtonColumn(QBoxLayout* layout) {
  auto* const column = new QVBoxLayout;
  column->addStrut(QFontMetrics(QApplication::font()).averageCharWidth() * 24);
  layout->addLayout(column);
  return column;
}

QPushButton* AddButton(QBoxLayout* layout, const QString& text, const QString& tip) {
  auto* const button = new QPushButton(text);
  button->setToolTip(tip);
  layout->addWidget(button);
  return button;
}

// Disabled, and says why, until its work exists.
void AwaitLaterVersion(QWidget* control) {
  control->setEnabled(false);
  control->setToolTip(control->toolTip() + QStringLiteral(" ") + LaterVersion());
}

}  // namespace

CDeviceConfigPage::CDeviceConfigPage(PageContext context, std::uint32_t device_mode,
                                     QWidget* parent)
    : QWidget(parent), context_(context), device_mode_(device_mode) {
  auto* const layout = new QVBoxLayout(this);
  layout->addWidget(BuildReportGroup(), 3);
  layout->addWidget(BuildFlashGroup(), 2);
  for (QWidget* const control : {static_cast<QWidget*>(flash_), static_cast<QWidget*>(device_),
                                 static_cast<QWidget*>(serial_), static_cast<QWidget*>(set_),
                                 static_cast<QWidget*>(reboot_), static_cast<QWidget*>(program_),
                                 static_cast<QWidget*>(execute_), static_cast<QWidget*>(load_)}) {
    AwaitLaterVersion(control);
  }
}

QWidget* CDeviceConfigPage::BuildReportGroup() {
  auto* const group = new QGroupBox(tr("Device Configuration"));
  auto* const layout = new QHBoxLayout(group);
  report_ = new CReportText(tr("Report on the board"));
  layout->addWidget(report_, 1);
  auto* const column = AddButtonColumn(layout);
  refresh_ = AddButton(column, tr("Refresh"), tr("Closes all boards and looks for them again."));
  connect(refresh_, &QPushButton::clicked, this, &CDeviceConfigPage::RefreshRequested);
  flash_ = AddButton(column, tr("Flash"), tr("Restarts the board in its firmware loader."));
  device_ = AddButton(column, tr("Device"), tr("Restarts the board in its firmware."));
  column->addStretch(1);
  column->addWidget(BuildSerialRow());
  reboot_ = AddButton(column, tr("Reboot"), tr("Restarts the board in the mode it is in."));
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
  serial_ = new QLineEdit;
  serial_->setMaxLength(3);
  serial_->setMaximumWidth(fontMetrics().horizontalAdvance(QStringLiteral("0000000")));
  serial_->setAccessibleName(tr("Serial number"));
  serial_->setToolTip(tr("Three digits that tell boards of one kind apart, 000 to 999."));
  label->setBuddy(serial_);
  row->addWidget(serial_);
  set_ = AddButton(row, tr("Set"), tr("Gives the board this serial number."));
  return box;
}

QWidget* CDeviceConfigPage::BuildFlashGroup() {
  auto* const group = new QGroupBox(tr("Flash Update"));
  auto* const layout = new QHBoxLayout(group);
  auto* const left = new QVBoxLayout;
  layout->addLayout(left, 1);
  log_ = new CReportText(tr("Log of the flash update"));
  left->addWidget(log_, 1);
  file_ = new QLabel(QStringLiteral("File : "));
  left->addWidget(file_);
  progress_ = new QProgressBar;
  progress_->setAccessibleName(tr("Progress of the flash update"));
  progress_->setValue(0);
  left->addWidget(progress_);
  auto* const column = AddButtonColumn(layout);
  program_ = AddButton(column, tr("Program"), tr("Writes the loaded file into the board."));
  execute_ = AddButton(column, tr("Execute"), tr("Restarts the board with its new firmware."));
  column->addStretch(1);
  load_ = AddButton(column, tr("Load..."), tr("Chooses the KVX firmware file to write."));
  return group;
}

void CDeviceConfigPage::ShowDeviceInfo() {
  const DeviceTable& table = context_.link.table;
  progress_->setValue(0);
  if (table.IsEmpty()) {
    report_->setPlainText(QString::fromStdString(EmptyDeviceReport()));
    serial_->clear();
    return;
  }
  const DeviceReport report =
      ReportOnDevice(table.CurrentRecord(), table.CurrentType(), device_mode_);
  report_->setPlainText(QString::fromStdString(report.text));
  serial_->setText(QString::fromStdString(report.serial_number));
  Q_EMIT BoardReported(report.flash_mode_active, report.pages_enabled);
  if (report.fit == FirmwareFit::kTooNew) {
    context_.prompts.Message(this, IncompatibleText(),
                             QStringLiteral("Incompatible Version Detected"),
                             UserPrompts::Icon::kExclamation);
  }
}

}  // namespace quillon
