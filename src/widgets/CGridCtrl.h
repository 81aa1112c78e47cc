// SPDX-License-Identifier: MIT
#pragma once

#include <QTableView>
#include <functional>
#include <optional>

#include "widgets/GridCell.h"

class QIcon;

namespace quillon {

class CChoiceList;
class GridDelegate;
class GridModel;

// The editable grid of the settings pages. Row 0 holds the column titles and column 0 the row
// titles (the headers show them); channel n is row n. Every cell has a text, a value, a background
// and a kind. The value is the page's code for what the cell says: toggles keep 0 or 1 in it,
// numbers their number, combos what the page derives from the chosen text.
//
// Setters only note what they change; Redraw() shows it, and runs by itself after each edit of the
// user. Rows and columns must exist.
class CGridCtrl : public QTableView {
  Q_OBJECT

 public:
  using ClickHandler = std::function<void(int row, int column)>;
  using EndEditHandler = std::function<bool(int row, int column)>;

  explicit CGridCtrl(QWidget* parent = nullptr);
  ~CGridCtrl() override;

  // Starts anew with empty plain cells; both counts include the titles.
  void Resize(int rows, int columns);
  int Rows() const;
  int Columns() const;

  QString Text(int row, int column) const;
  void SetText(int row, int column, const QString& text);
  std::uint32_t Value(int row, int column) const;
  void SetValue(int row, int column, std::uint32_t value);
  // Nothing stands for the palette's own background. A dark palette shows a dark tone of the colour
  // given here.
  std::optional<QRgb> Background(int row, int column) const;
  void SetBackground(int row, int column, std::optional<QRgb> colour);

  CellKind Kind(int row, int column) const;
  void SetKind(int row, int column, CellKind kind);
  // A combo cell; its text need not be one of the choices. Give all cells of a column one list.
  void SetCombo(int row, int column, const QStringList& choices);
  // A number cell that takes no entry outside minimum to maximum. A page that wants to refuse a
  // number with a message gives a wider range here.
  void SetNumber(int row, int column, int minimum, int maximum);
  // False is for a cell that the row does not have: it is hatched, has no box or arrow, is skipped
  // by keys and cannot be edited. A click on it counts as one on its row.
  void SetEnabledCell(int row, int column, bool enabled);
  bool IsEnabledCell(int row, int column) const;
  // The small corner of a cell that was edited, or that shows another value than the board holds.
  void SetMarked(int row, int column, bool marked, bool edited = true);
  bool IsMarked(int row, int column) const;

  // The images of ImageToggle cells for the values 0 and 1; without them they look like check
  // boxes.
  void SetToggleImages(const QIcon& off, const QIcon& on);
  // Gives the tooltip of a cell, or of a column's title (row 0), whenever one is wanted.
  void SetToolTips(std::function<QString(int row, int column)> tool_tips);

  // Paints all data cells: those of `row` in one colour, all others in another.
  void HighlightRow(int row, QRgb row_colour, QRgb others_colour);
  // Makes columns as wide as their title, with its blanks, and their widest content or choice.
  void FitColumns();
  void Redraw();

  // Called after a click or Space on a data cell; toggles have been inverted by then. Also for a
  // cell that the row does not have.
  void SetClickHandler(ClickHandler handler);
  // Called once after a choice or an entry; the cell has the new text by then, number cells the new
  // value too. If the handler returns false, both are put back. It may open a message box.
  void SetEndEditHandler(EndEditHandler handler);

  // What a click and a choice or entry of the user do, for callers without a mouse.
  void Click(int row, int column);
  void Enter(int row, int column, const QString& text);
  // Ends the typing in a number cell and takes the number; a key or menu that starts an update does
  // not do that by itself. False when it was refused, by the page or because it is no number of the
  // cell.
  bool FinishEdit();

  QSize sizeHint() const override;
  void keyboardSearch(const QString&) override {}

 signals:
  // After every Redraw(), and so after every change that shows.
  void Redrawn();
  // An entry of the user was refused; the cell has its former text again.
  void EntryRefused();

 protected:
  void keyPressEvent(QKeyEvent* event) override;
  void mouseDoubleClickEvent(QMouseEvent* event) override;
  void mouseReleaseEvent(QMouseEvent* event) override;
  void currentChanged(const QModelIndex& current, const QModelIndex& previous) override;
  void closeEditor(QWidget* editor, QAbstractItemDelegate::EndEditHint hint) override;
  void changeEvent(QEvent* event) override;
  void focusInEvent(QFocusEvent* event) override;
  void hideEvent(QHideEvent* event) override;

 private:
  bool CellKey(const QKeyEvent& event);
  void Open(int row, int column);
  void MakeChoices();
  void CloseChoices();
  void Copy() const;
  void FitRows();

  GridModel* model_;
  GridDelegate* delegate_;
  CChoiceList* choices_ = nullptr;
  ClickHandler click_;
  EndEditHandler end_edit_;
  Qt::KeyboardModifiers click_keys_;
  bool fitted_ = false;
  bool entry_kept_ = true;  // what the page said of the last choice or entry
};

}  // namespace quillon
