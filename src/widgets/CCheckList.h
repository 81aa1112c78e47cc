// SPDX-License-Identifier: MIT
#pragma once

#include "widgets/CGridCtrl.h"

namespace quillon {

// A list of things with a check box each: a grid without row titles, in which whole rows are
// selected and Space means the box of the row. Rows and columns count from 0 here, and the first
// column has the boxes.
//
// As in the grid, Redraw() shows what was set.
class CCheckList : public CGridCtrl {
  Q_OBJECT

 public:
  explicit CCheckList(const QStringList& titles, QWidget* parent = nullptr);

  // Starts anew with so many empty rows that are not checked.
  void SetRows(int rows);
  int RowCount() const { return Rows() - 1; }

  // The first column's text is the name of the row, for screen readers too.
  void Write(int row, int column, const QString& text);
  QString Read(int row, int column) const { return Text(row + 1, column + 1); }
  // A bar of so many per cent, until something is written there.
  void ShowProgress(int row, int column, int percent);
  void Paint(int row, QRgb colour);
  void PaintCell(int row, int column, QRgb colour) { SetBackground(row + 1, column + 1, colour); }
  QRgb Colour(int row, int column) const { return *Background(row + 1, column + 1); }

  void Check(int row, bool checked) { SetValue(row + 1, 1, checked ? 1 : 0); }
  bool IsChecked(int row) const { return Value(row + 1, 1) != 0; }

  // A line that belongs to the list and is copied with it.
  void SetFootLine(const QString& line) { foot_line_ = line; }
  // Titles, rows and the line as text, with the columns that are shown.
  QString AsText() const;
  void CopyAll() const;

 Q_SIGNALS:
  // The user checked a row or cleared its box.
  void Toggled(int row);

 protected:
  void keyPressEvent(QKeyEvent* event) override;
  void changeEvent(QEvent* event) override;

 private:
  void Tint();

  QStringList titles_;
  QString foot_line_;
};

}  // namespace quillon
