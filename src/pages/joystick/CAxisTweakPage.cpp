// SPDX-License-Identifier: MIT
#include "pages/joystick/CAxisTweakPage.h"

#include <QBoxLayout>
#include <QCheckBox>
#include <QComboBox>
#include <QGridLayout>
#include <QLabel>
#include <array>

#include "pages/common/CNumberBox.h"
#include "pages/joystick/CAxisCalibrateDlg.h"
#include "settings/AnalogBlocks.h"
#include "widgets/ScreenReaderClick.h"

namespace quillon {
namespace {

// By column, from the one behind the labels on.
constexpr std::array<std::string_view, 6> kSettings{"active",   "trim_min", "deadzone",
                                                    "trim_max", "combine",  "calibrate"};
constexpr int kColumnSpacing = 16;

QString Text(std::string_view text) {
  return QString::fromUtf8(text.data(), static_cast<qsizetype>(text.size()));
}

}  // namespace

CAxisTweakPage::CAxisTweakPage(PageContext context, const Page& page, QWidget* parent)
    : CSettingsPage(context, page, tr("Axis Channels Tweak"), parent) {
  auto* const grid = new QGridLayout;
  grid->setHorizontalSpacing(kColumnSpacing);
  grid->setColumnStretch(static_cast<int>(kSettings.size()) + 1, 1);
  Body()->addLayout(grid);
  Body()->addStretch(1);
  for (int axis = 0; axis < static_cast<int>(kAxes); ++axis) AddLine(grid, axis);
}

void CAxisTweakPage::AddLine(QGridLayout* grid, int axis) {
  auto* const label = new QLabel;
  grid->addWidget(label, axis + 1, 0, Qt::AlignRight | Qt::AlignVCenter);
  for (std::size_t i = 0; i < kSettings.size(); ++i) {
    const int column = static_cast<int>(i) + 1;
    const Cell cell = *Values().Find("axis", axis + 1, kSettings[i]);
    const Setting& setting = Values().SettingOf(cell);
    label->setText(QStringLiteral("%1 Axis :").arg(Text(Values().RowNameOf(cell))));
    if (axis == 0) {
      auto* const caption = new QLabel(Text(setting.title));
      caption->setToolTip(Text(setting.purpose));
      grid->addWidget(caption, 0, column, Qt::AlignHCenter);
    }
    if (setting.field.width == 1) {
      auto* const box = new QCheckBox;
      AddControl(grid, cell, box, column);
      Controls().Bind(box, cell);
      if (label->buddy() == nullptr) label->setBuddy(box);
      if (!setting.state_only) continue;
      LetScreenReadersClick(box);
      connect(box, &QCheckBox::clicked, this, [=, this] { Calibrate(axis, box); });
    } else if (setting.choices.empty()) {
      auto* const number = new CNumberBox(static_cast<int>(setting.most));
      AddControl(grid, cell, number, column);
      Controls().Bind(number, cell);
    } else {
      auto* const list = new QComboBox;
      AddControl(grid, cell, list, column);
      Controls().Bind(list, cell);
      // On Unix a list is read with its label's name, whatever its own name is.
      auto* const list_name = new QLabel(list->accessibleName(), list->parentWidget());
      list_name->setBuddy(list);
      list_name->hide();
    }
  }
}

void CAxisTweakPage::AddControl(QGridLayout* grid, Cell cell, QWidget* control, int column) {
  control->setAccessibleName(
      QStringLiteral("%1 axis: %2")
          .arg(Text(Values().RowNameOf(cell)), Text(Values().SettingOf(cell).title)));
  const bool box = Values().SettingOf(cell).field.width == 1;
  grid->addWidget(control, Values().LineOf(cell), column, box ? Qt::AlignCenter : Qt::Alignment());
}

void CAxisTweakPage::Calibrate(int axis, QCheckBox* box) {
  const auto hold = Context().link.gate.TryEnter();
  if (!hold) {
    box->toggle();  // back: the click does nothing
    return;
  }
  CAxisCalibrateDlg dialog(
      axis, [this](HidPacket& packet) { return SendCurrent(packet); }, this);
  const CalibrationStatus status = dialog.Run();
  Choose(*Values().Find("axis", axis + 1, "calibrate"), 0);
  ReportCalibration(axis, status);
}

void CAxisTweakPage::ReportCalibration(int axis, CalibrationStatus status) {
  const QString name = Text(Values().RowNameOf(*Values().Find("axis", axis + 1, "active")));
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
