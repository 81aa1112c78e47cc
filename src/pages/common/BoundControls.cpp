// SPDX-License-Identifier: MIT
#include "pages/common/BoundControls.h"

#include <QBoxLayout>
#include <QCheckBox>
#include <QComboBox>
#include <QLabel>
#include <QSignalBlocker>

#include "pages/common/CNumberBox.h"
#include "pages/common/WheelGuard.h"
#include "widgets/CEditMark.h"

namespace quillon {

BoundControls::BoundControls(const Sheet& sheet, EditHandler edit, QObject* parent)
    : QObject(parent), sheet_(sheet), edit_(std::move(edit)) {}

void BoundControls::Bind(QCheckBox* box, Cell cell) {
  if (!sheet_.SettingOf(cell).state_only)
    connect(box, &QCheckBox::toggled, this, [=, this](bool on) { edit_(cell, on ? 1 : 0); });
  Add(box, cell, [box](std::uint32_t code) { box->setChecked(code != 0); });
}

void BoundControls::Bind(QComboBox* list, Cell cell) {
  for (const Offer& offer : OffersOf(sheet_.SettingOf(cell)))
    list->addItem(QString::fromStdString(offer.text), offer.code);
  GuardFromWheel(list);
  const auto choose = [=, this](int index) {
    if (index >= 0) edit_(cell, list->itemData(index).toUInt());
  };
  connect(list, &QComboBox::currentIndexChanged, this, choose);
  // Choosing the entry that is shown is a choice too.
  connect(list, &QComboBox::activated, this, choose);
  Add(list, cell,
      [list](std::uint32_t code) { list->setCurrentIndex(list->findData(QVariant(code))); });
}

void BoundControls::Bind(CNumberBox* box, Cell cell) {
  connect(box, qOverload<int>(&QSpinBox::valueChanged), this,
          [=, this](int value) { edit_(cell, static_cast<std::uint32_t>(value)); });
  connect(box, &CNumberBox::EntryCorrected, this, &BoundControls::EntryRefused);
  numbers_.push_back(box);
  Add(box, cell, [box](std::uint32_t code) {
    const auto value = static_cast<int>(code);
    // Not while that number is being typed; a box that was never shown has no text yet.
    if (box->value() != value || box->text().isEmpty()) box->ShowHeld(value);
  });
}

void BoundControls::AddLabelled(QBoxLayout* line, Cell cell) {
  const Setting& setting = sheet_.SettingOf(cell);
  const QString title =
      QString::fromUtf8(setting.title.data(), static_cast<qsizetype>(setting.title.size()));
  auto* const label = new QLabel(title + QStringLiteral(" :"));
  line->addWidget(label);
  const auto add = [&](auto* control) {
    line->addWidget(control);
    control->setAccessibleName(title);
    label->setBuddy(control);
    Bind(control, cell);
  };
  if (setting.choices.empty()) {
    add(new CNumberBox(static_cast<int>(setting.most)));
  } else {
    add(new QComboBox);
  }
}

void BoundControls::Add(QWidget* control, Cell cell, std::function<void(std::uint32_t code)> show) {
  auto* const mark = new CEditMark(control);
  shows_.push_back([=, this, show = std::move(show)] {
    const QSignalBlocker blocker(control);
    show(sheet_.Code(cell));
    const QString note = QString::fromStdString(sheet_.NoteOf(cell));
    const QString description = QString::fromStdString(sheet_.DescriptionOf(cell));
    control->setToolTip(note.isEmpty() ? description : note + QLatin1Char('\n') + description);
    const Mark state = sheet_.MarkOf(cell);
    mark->SetState(state == Mark::kEdited ? tr("Edited.") : note);
  });
  shows_.back()();
}

void BoundControls::Show() {
  for (const auto& show : shows_) show();
}

bool BoundControls::FinishEdits() {
  bool kept = true;
  for (CNumberBox* const box : numbers_) kept = box->FinishEdit() && kept;
  return kept;
}

}  // namespace quillon
