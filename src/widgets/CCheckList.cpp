// SPDX-License-Identifier: MIT
#include "widgets/CCheckList.h"

#include <QClipboard>
#include <QGuiApplication>
#include <QHeaderView>
#include <QKeyEvent>

#include "widgets/Tone.h"

namespace quillon {
namespace {

constexpr QRgb kGround = qRgb(0xF5, 0xF5, 0xF5);

}  // namespace

CCheckList::CCheckList(const QStringList& titles, QWidget* parent)
    : CGridCtrl(parent), titles_(titles) {
  verticalHeader()->hide();
  setSelectionBehavior(SelectRows);
  setSelectionMode(SingleSelection);
  SetClickHandler([this](int row, int column) {
    if (column == 1) Q_EMIT Toggled(row - 1);
  });
  SetRows(0);
  Tint();
}

void CCheckList::SetRows(int rows) {
  const auto columns = static_cast<int>(titles_.size());
  Resize(rows + 1, columns + 1);
  for (int column = 0; column < columns; ++column) SetText(0, column + 1, titles_[column]);
  for (int row = 0; row < rows; ++row) SetKind(row + 1, 1, CellKind::kNamedCheckBox);
}

void CCheckList::Write(int row, int column, const QString& text) {
  if (column == 0) SetText(row + 1, 0, text);
  if (Kind(row + 1, column + 1) == CellKind::kProgress) {
    SetKind(row + 1, column + 1, CellKind::kPlain);
  }
  SetText(row + 1, column + 1, text);
}

void CCheckList::ShowProgress(int row, int column, int percent) {
  SetKind(row + 1, column + 1, CellKind::kProgress);
  SetValue(row + 1, column + 1, static_cast<std::uint32_t>(percent));
  SetText(row + 1, column + 1, tr("%1 %").arg(percent));
}

void CCheckList::Paint(int row, QRgb colour) {
  for (int column = 0; column < titles_.size(); ++column) PaintCell(row, column, colour);
}

QString CCheckList::AsText() const {
  QStringList lines;
  for (int row = 0; row <= RowCount(); ++row) {
    QStringList words;
    for (int column = 1; column < Columns(); ++column) {
      if (!isColumnHidden(column - 1)) words << Text(row, column);
    }
    if (row > 0) words.front().prepend(IsChecked(row - 1) ? tr("[x] ") : tr("[ ] "));
    lines << words.join(u'\t');
  }
  if (!foot_line_.isEmpty()) lines << foot_line_;
  return lines.join(u'\n') + u'\n';
}

void CCheckList::CopyAll() const { QGuiApplication::clipboard()->setText(AsText()); }

void CCheckList::keyPressEvent(QKeyEvent* event) {
  const bool space = event->key() == Qt::Key_Space && event->modifiers() == Qt::NoModifier;
  if (event->matches(QKeySequence::Copy)) {
    CopyAll();
  } else if (space && currentIndex().isValid()) {
    if (!event->isAutoRepeat()) Click(currentIndex().row() + 1, 1);
  } else {
    CGridCtrl::keyPressEvent(event);
  }
}

void CCheckList::changeEvent(QEvent* event) {
  CGridCtrl::changeEvent(event);
  if (event->type() == QEvent::ApplicationPaletteChange) Tint();
}

// Where no row is.
void CCheckList::Tint() {
  QPalette tinted;
  tinted.setColor(QPalette::Base, ToneFor(kGround, tinted));
  viewport()->setPalette(tinted);
}

}  // namespace quillon
