// SPDX-License-Identifier: MIT
#include "pages/joystick/CAxisCalibrateDlg.h"

#include <QBoxLayout>
#include <QDialogButtonBox>
#include <QGridLayout>
#include <QGroupBox>
#include <QLabel>
#include <QPushButton>
#include <QRadioButton>
#include <utility>

#include "pages/common/CNumberBox.h"
#include "settings/JoystickSettings.h"
#include "settings/TweakBlock.h"
#include "widgets/ScreenReaderClick.h"

namespace quillon {
namespace {

constexpr int kLargestValue = 65535;
constexpr std::array<int, 3> kDefaultValues{0, 32768, kLargestValue};

QString Instruction(const QString& axis) {
  return QStringLiteral(
             "Move the %1 axis control to it's minimum and maximum positions.\n\nIf this channel "
             "has a center position, center the\naxis before clicking on the OK button.")
      .arg(axis);
}

}  // namespace

CAxisCalibrateDlg::CAxisCalibrateDlg(int axis, Exchange exchange, QWidget* parent)
    : QDialog(parent), axis_(axis), exchange_(std::move(exchange)) {
  const std::string_view id = AxisNames()[static_cast<std::size_t>(axis)];
  const QString name = QString::fromUtf8(id.data(), static_cast<qsizetype>(id.size()));
  setWindowTitle(QStringLiteral("%1 Axis Calibrate").arg(name));
  auto* const layout = new QVBoxLayout(this);
  layout->addWidget(BuildModes());
  instruction_ = new QLabel(Instruction(name));
  layout->addWidget(instruction_);
  layout->addWidget(BuildValues());
  layout->addStretch(1);
  layout->addWidget(BuildButtons());
  ShowDefaults();
}

QWidget* CAxisCalibrateDlg::BuildModes() {
  auto* const box = new QWidget;
  auto* const layout = new QHBoxLayout(box);
  layout->setContentsMargins(0, 0, 0, 0);
  automatic_ = new QRadioButton(QStringLiteral("Automatic"));
  automatic_->setToolTip(
      tr("The board measures the axis while it is moved. Each click reads the "
         "values that it has found so far. Default."));
  LetScreenReadersClick(automatic_);
  connect(automatic_, &QRadioButton::clicked, this, &CAxisCalibrateDlg::Measure);
  layout->addWidget(automatic_);
  manual_ = new QRadioButton(QStringLiteral("Manual"));
  manual_->setToolTip(tr("OK stores the values below in the board instead of measured ones."));
  LetScreenReadersClick(manual_);
  connect(manual_, &QRadioButton::clicked, this, [this] { SetManual(true); });
  layout->addWidget(manual_);
  layout->addStretch(1);
  return box;
}

QWidget* CAxisCalibrateDlg::BuildValues() {
  auto* const group = new QGroupBox(QStringLiteral("Calibration Values"));
  auto* const layout = new QGridLayout(group);
  measured_ = new QLabel(QStringLiteral("Min:  Cen:  Max:"));
  measured_->setToolTip(tr("What the board has measured."));
  layout->addWidget(measured_, 0, 0, 1, 3);
  const std::array<QString, 3> captions{QStringLiteral("Min"), QStringLiteral("Center"),
                                        QStringLiteral("Max")};
  const std::array<QString, 3> tips{
      tr("The raw value at the lower end of the axis, 0 to 65535. Default: 0."),
      tr("The raw value in the middle of the axis, 0 to 65535. Default: 32768."),
      tr("The raw value at the upper end of the axis, 0 to 65535. Default: 65535.")};
  for (std::size_t i = 0; i < values_.size(); ++i) {
    auto* const caption = new QLabel(captions[i]);
    values_[i] = new CNumberBox(kLargestValue);
    values_[i]->setAccessibleName(captions[i]);
    values_[i]->setToolTip(tips[i]);
    caption->setBuddy(values_[i]);
    layout->addWidget(caption, 1, static_cast<int>(i));
    layout->addWidget(values_[i], 2, static_cast<int>(i));
  }
  return group;
}

QWidget* CAxisCalibrateDlg::BuildButtons() {
  // Only a button that stands in the dialog becomes its default.
  auto* const buttons = new QDialogButtonBox(this);
  auto* const defaults =
      buttons->addButton(QStringLiteral("Defaults"), QDialogButtonBox::ResetRole);
  defaults->setToolTip(tr("Back to Automatic with the widest values. Sends nothing."));
  connect(defaults, &QPushButton::clicked, this, &CAxisCalibrateDlg::ShowDefaults);
  auto* const ok = buttons->addButton(QStringLiteral("OK"), QDialogButtonBox::AcceptRole);
  ok->setToolTip(tr("Stores the calibration in the board."));
  ok->setDefault(true);
  auto* const cancel = buttons->addButton(QStringLiteral("Cancel"), QDialogButtonBox::RejectRole);
  cancel->setToolTip(tr("Ends the calibration; the board keeps the former one."));
  connect(buttons, &QDialogButtonBox::accepted, this, &QDialog::accept);
  connect(buttons, &QDialogButtonBox::rejected, this, &QDialog::reject);
  return buttons;
}

CalibrationStatus CAxisCalibrateDlg::Run() {
  exec();
  // The end of the program ends exec() without closing the dialog.
  if (awaits_closing_command_) Close(false);
  return status_;
}

void CAxisCalibrateDlg::showEvent(QShowEvent* event) {
  QDialog::showEvent(event);
  if (status_ != CalibrationStatus::kNotShown) return;
  awaits_closing_command_ = true;
  Measure();
}

void CAxisCalibrateDlg::done(int result) {
  if (awaits_closing_command_) Close(result == Accepted);
  QDialog::done(result);
}

void CAxisCalibrateDlg::ShowDefaults() {
  SetManual(false);
  for (std::size_t i = 0; i < values_.size(); ++i) values_[i]->setValue(kDefaultValues[i]);
}

void CAxisCalibrateDlg::SetManual(bool manual) {
  (manual ? manual_ : automatic_)->setChecked(true);
  for (CNumberBox* const value : values_) value->setEnabled(manual);
  instruction_->setEnabled(!manual);
}

void CAxisCalibrateDlg::Measure() {
  SetManual(false);
  HidPacket packet{};
  if (!Ask(calibration::kBegin, packet)) return;
  QString line = QStringLiteral("Min: %1  Cen: %2  Max: %3");
  for (std::size_t i = 0; i < values_.size(); ++i) {
    const int value = packet[kDataByte + 2 * i] | packet[kDataByte + 2 * i + 1] << 8;
    values_[i]->setValue(value);
    line = line.arg(value);
  }
  measured_->setText(line);
}

void CAxisCalibrateDlg::Close(bool accept) {
  awaits_closing_command_ = false;
  HidPacket packet{};
  if (!accept) {
    status_ = CalibrationStatus::kCancelling;
    Ask(calibration::kCancel, packet);
  } else if (manual_->isChecked()) {
    for (std::size_t i = 0; i < values_.size(); ++i) {
      const int value = values_[i]->Take();
      packet[kPayloadByte + 1 + 2 * i] = static_cast<std::uint8_t>(value);
      packet[kPayloadByte + 2 + 2 * i] = static_cast<std::uint8_t>(value >> 8);
    }
    Ask(calibration::kManual, packet);
  } else {
    Ask(calibration::kAccept, packet);
  }
}

bool CAxisCalibrateDlg::Ask(std::uint8_t command, HidPacket& packet) {
  packet[kCommandByte] = command;
  packet[kPayloadByte] = static_cast<std::uint8_t>(axis_);
  const bool echoed = exchange_(packet);
  status_ = echoed ? CalibrationStatus::kSucceeded : CalibrationStatus::kFailed;
  return echoed;
}

}  // namespace quillon
