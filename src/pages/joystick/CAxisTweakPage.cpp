// SPDX-License-Identifier: MIT
#include "pages/joystick/CAxisTweakPage.h"

#include <QBoxLayout>
#include <QCheckBox>
#include <QComboBox>
#include <QGridLayout>
#include <QLabel>

#include "pages/common/CNumberBox.h"
#include "pages/common/EditMarks.h"
#include "pages/common/WheelGuard.h"
#include "pages/joystick/AxisNames.h"
#include "pages/joystick/CAxisCalibrateDlg.h"
#include "widgets/ScreenReaderClick.h"

namespace quillon {
namespace {

enum Column { kLabel, kActive, kTrimMin, kDeadzone, kTrimMax, kCombine, kCalibrate, kColumns };

constexpr int kLargestPercent = 100;
constexpr std::array kPercentFields{tweak::kTrimMin, tweak::kDeadzone, tweak::kTrimMax};
constexpr int kColumnSpacing = 16;

QString Caption(int column) {
  return std::array{QString(),
                    QStringLiteral("Active"),
                    QStringLiteral("Trim Min %"),
                    QStringLiteral("Deadzone %"),
                    QStringLiteral("Trim Max %"),
                    QStringLiteral("Combine"),
                    QStringLiteral("Calibrate")}[static_cast<std::size_t>(column)];
}

QString Tip(int column) {
  switch (column) {
    case kActive:
      return QStringLiteral("Switches the axis on in the board. Default: off.");
    case kTrimMin:
      return QStringLiteral(
          "Cuts this much off the lower end of the axis, 0 to 100 %. Default: "
          "0.");
    case kDeadzone:
      return QStringLiteral(
          "Around the center this much counts as centered, 0 to 100 %. Default: "
          "0.");
    case kTrimMax:
      return QStringLiteral(
          "Cuts this much off the upper end of the axis, 0 to 100 %. Default: "
          "0.");
    case kCombine:
      return QStringLiteral("The axis that the board combines this one with. Default: itself.");
    case kCalibrate:
      return QStringLiteral(
          "Opens the calibration of the axis. The board begins to measure it at "
          "once, and keeps the result when it is accepted.");
    default:
      return {};
  }
}

}  // namespace

CAxisTweakPage::CAxisTweakPage(PageContext context, QWidget* parent)
    : CSettingsPage(context, tr("Axis Channels Tweak"), parent) {
  auto* const grid = new QGridLayout;
  grid->setHorizontalSpacing(kColumnSpacing);
  grid->setColumnStretch(kColumns, 1);
  Body()->addLayout(grid);
  Body()->addStretch(1);
  AddCaptions(grid);
  for (int axis = 0; axis < static_cast<int>(lines_.size()); ++axis) AddLine(grid, axis);
  CAxisTweakPage::DefaultsRoutine();
}

void CAxisTweakPage::AddCaptions(QGridLayout* grid) {
  for (int column = kActive; column < kColumns; ++column) {
    auto* const caption = new QLabel(Caption(column));
    caption->setToolTip(Tip(column));
    grid->addWidget(caption, 0, column, Qt::AlignHCenter);
  }
}

void CAxisTweakPage::AddLine(QGridLayout* grid, int axis) {
  const QString name = AxisNames().at(axis);
  Line& line = lines_[static_cast<std::size_t>(axis)];
  const auto add = [&](QWidget* control, int column, Qt::Alignment alignment) {
    control->setAccessibleName(QStringLiteral("%1 axis: %2").arg(name, Caption(column)));
    control->setToolTip(Tip(column));
    grid->addWidget(control, axis + 1, column, alignment);
  };
  auto* const label = new QLabel(QStringLiteral("%1 Axis :").arg(name));
  grid->addWidget(label, axis + 1, kLabel, Qt::AlignRight | Qt::AlignVCenter);
  line.active = new QCheckBox;
  label->setBuddy(line.active);
  add(line.active, kActive, Qt::AlignCenter);
  Marks().Track(line.active);
  for (std::size_t i = 0; i < line.percents.size(); ++i) {
    line.percents[i] = new CNumberBox(kLargestPercent);
    add(line.percents[i], kTrimMin + static_cast<int>(i), {});
    Marks().Track(line.percents[i]);
  }
  line.combine = new QComboBox;
  line.combine->addItems(AxisNames());
  GuardFromWheel(line.combine);
  add(line.combine, kCombine, {});
  Marks().Track(line.combine);
  // On Unix a list is read with its label's name, whatever its own name is.
  auto* const list_name = new QLabel(line.combine->accessibleName(), line.combine->parentWidget());
  list_name->setBuddy(line.combine);
  list_name->hide();
  line.calibrate = new QCheckBox;
  LetScreenReadersClick(line.calibrate);
  add(line.calibrate, kCalibrate, Qt::AlignCenter);
  connect(line.calibrate, &QCheckBox::clicked, this, [this, axis] { Calibrate(axis); });
}

bool CAxisTweakPage::RetrieveRoutine() {
  if (!RetrieveBlock(tweak::kRead, block_)) return false;
  for (std::size_t axis = 0; axis < lines_.size(); ++axis) {
    const Line& line = lines_[axis];
    line.active->setChecked(block_.Get(axis, tweak::kActive) != 0);
    line.calibrate->setChecked(block_.Get(axis, tweak::kCalibrate) != 0);
    line.combine->setCurrentIndex(static_cast<int>(block_.Get(axis, tweak::kCombine)));
    for (std::size_t i = 0; i < line.percents.size(); ++i) {
      line.percents[i]->ShowHeld(static_cast<int>(block_.Get(axis, kPercentFields[i])));
    }
  }
  return true;
}

bool CAxisTweakPage::UpdateRoutine() {
  for (std::size_t axis = 0; axis < lines_.size(); ++axis) {
    const Line& line = lines_[axis];
    line.calibrate->setChecked(false);
    block_.Set(axis, tweak::kActive, line.active->isChecked() ? 1 : 0);
    block_.Set(axis, tweak::kCalibrate, 0);
    block_.Set(axis, tweak::kCombine, static_cast<std::uint32_t>(line.combine->currentIndex()));
    for (std::size_t i = 0; i < line.percents.size(); ++i) {
      block_.Set(axis, kPercentFields[i], static_cast<std::uint32_t>(line.percents[i]->Take()));
    }
  }
  return UpdateBlock(tweak::kWrite, block_);
}

void CAxisTweakPage::DefaultsRoutine() {
  for (std::size_t axis = 0; axis < lines_.size(); ++axis) {
    const Line& line = lines_[axis];
    line.active->setChecked(false);
    line.calibrate->setChecked(false);
    for (CNumberBox* const percent : line.percents) percent->setValue(0);
    line.combine->setCurrentIndex(static_cast<int>(axis));
  }
}

void CAxisTweakPage::Calibrate(int axis) {
  QCheckBox* const box = lines_[static_cast<std::size_t>(axis)].calibrate;
  const auto hold = Context().link.gate.TryEnter();
  if (!hold) {
    box->toggle();  // back: the click does nothing
    return;
  }
  CAxisCalibrateDlg dialog(
      axis, [this](HidPacket& packet) { return SendCurrent(packet); }, this);
  const CalibrationStatus status = dialog.Run();
  box->setChecked(false);
  ReportCalibration(axis, status);
}

void CAxisTweakPage::ReportCalibration(int axis, CalibrationStatus status) {
  const QString name = AxisNames().at(axis);
  UserPrompts& prompts = Context().prompts;
  if (status == CalibrationStatus::kNotShown) {
    prompts.Message(this, QStringLiteral("Dialog box could not be created!"),
                    QStringLiteral("Quillon"), UserPrompts::Icon::kNone);
  } else if (status == CalibrationStatus::kSucceeded) {
    ShowError(false);
  } else if (status == CalibrationStatus::kFailed) {
    ShowError(true);
    prompts.Message(this, QStringLiteral("%1 axis calibration failure.").arg(name),
                    QStringLiteral("%1 Axis Calibration").arg(name), UserPrompts::Icon::kError);
  }
}

}  // namespace quillon
