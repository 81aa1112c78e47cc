// SPDX-License-Identifier: MIT
#include "pages/common/EditMarks.h"

#include <QCheckBox>
#include <QComboBox>
#include <algorithm>

#include "pages/common/CNumberBox.h"
#include "widgets/CEditMark.h"
#include "widgets/CGridCtrl.h"

namespace quillon {

EditMarks::EditMarks(QObject* parent) : QObject(parent) {}

void EditMarks::Track(CGridCtrl* grid) {
  grids_.push_back(grid);
  for (int row = 1; row < grid->Rows(); ++row) {
    for (int column = 1; column < grid->Columns(); ++column) {
      // The text too: a cell can show what its value alone does not tell.
      items_.push_back({[=] {
                          return QString::number(grid->Value(row, column)) + QLatin1Char(' ') +
                                 grid->Text(row, column);
                        },
                        [=](bool edited) { grid->SetMarked(row, column, edited); }});
    }
  }
  connect(grid, &CGridCtrl::Redrawn, this, &EditMarks::Compare);
  connect(grid, &CGridCtrl::EntryRefused, this, &EditMarks::EntryRefused);
}

void EditMarks::Track(CNumberBox* box) {
  Track(box, [box] { return QString::number(box->value()); });
  connect(box, qOverload<int>(&QSpinBox::valueChanged), this, &EditMarks::Compare);
  connect(box, &CNumberBox::EntryCorrected, this, &EditMarks::EntryRefused);
}

void EditMarks::Track(QCheckBox* box) {
  Track(box, [box] { return QString::number(box->isChecked() ? 1 : 0); });
  connect(box, &QCheckBox::toggled, this, &EditMarks::Compare);
}

void EditMarks::Track(QComboBox* box) {
  Track(box, [box] { return QString::number(box->currentIndex()); });
  connect(box, qOverload<int>(&QComboBox::currentIndexChanged), this, &EditMarks::Compare);
}

void EditMarks::Track(QWidget* control, std::function<QString()> read) {
  auto* const mark = new CEditMark(control);
  items_.push_back({std::move(read), [mark](bool edited) { mark->setVisible(edited); }});
}

void EditMarks::TakeBaseline() {
  has_baseline_ = true;
  for (Item& item : items_) item.baseline = item.read();
  Compare();
}

bool EditMarks::AnyEdited() const {
  return std::any_of(items_.begin(), items_.end(), [](const Item& item) { return item.edited; });
}

void EditMarks::Compare() {
  if (!has_baseline_) return;
  bool changed = false;
  for (Item& item : items_) {
    const bool edited = item.read() != item.baseline;
    if (edited == item.edited) continue;
    item.edited = edited;
    item.show(edited);
    changed = true;
  }
  if (!changed) return;
  for (CGridCtrl* const grid : grids_) grid->Redraw();
  Q_EMIT Changed();
}

}  // namespace quillon
