// SPDX-License-Identifier: MIT
#include "widgets/GridAccessibility.h"

#include <QAccessible>
#include <QAccessibleWidget>
#include <QHeaderView>
#include <QPointer>
#include <algorithm>
#include <map>

#include "widgets/CGridCtrl.h"
#include "widgets/GridModel.h"

namespace quillon {
namespace {

class GridInterface;

// A cell or a title, by the grid's own rows and columns, which count the titles.
class CellInterface final : public QAccessibleInterface,
                            public QAccessibleTableCellInterface,
                            public QAccessibleActionInterface {
 public:
  CellInterface(CGridCtrl& grid, int row, int column) : grid_(&grid), row_(row), column_(column) {}

  int Row() const { return row_; }
  int Column() const { return column_; }

  bool isValid() const override {
    return grid_ && row_ < grid_->Rows() && column_ < grid_->Columns();
  }
  QObject* object() const override { return nullptr; }
  QAccessibleInterface* parent() const override {
    return QAccessible::queryAccessibleInterface(grid_);
  }
  QAccessibleInterface* child(int /*index*/) const override { return nullptr; }
  QAccessibleInterface* childAt(int /*x*/, int /*y*/) const override { return nullptr; }
  int childCount() const override { return 0; }
  int indexOfChild(const QAccessibleInterface* /*child*/) const override { return -1; }

  QString text(QAccessible::Text kind) const override;
  void setText(QAccessible::Text /*kind*/, const QString& /*text*/) override {}
  QRect rect() const override;
  QAccessible::Role role() const override;
  QAccessible::State state() const override;
  void* interface_cast(QAccessible::InterfaceType type) override;

  bool isSelected() const override { return grid_->selectionModel()->isSelected(Index()); }
  QList<QAccessibleInterface*> columnHeaderCells() const override { return {Sibling(0, column_)}; }
  QList<QAccessibleInterface*> rowHeaderCells() const override { return {Sibling(row_, 0)}; }
  int columnIndex() const override { return column_ - 1; }
  int rowIndex() const override { return row_ - 1; }
  int columnExtent() const override { return 1; }
  int rowExtent() const override { return 1; }
  QAccessibleInterface* table() const override { return parent(); }

  QStringList actionNames() const override;
  void doAction(const QString& action) override;
  QStringList keyBindingsForAction(const QString& /*action*/) const override { return {}; }

 private:
  bool IsTitle() const { return row_ == 0 || column_ == 0; }
  bool IsUsable() const {
    return isValid() && !IsTitle() && grid_->isEnabled() && grid_->IsEnabledCell(row_, column_);
  }
  const GridModel& Model() const { return static_cast<const GridModel&>(*grid_->model()); }
  QModelIndex Index() const { return Model().IndexOf(row_, column_); }
  QAccessibleInterface* Sibling(int row, int column) const;

  QPointer<CGridCtrl> grid_;
  int row_;
  int column_;
};

// The children are the cells row by row, titles included, as Qt counts those of a table.
class GridInterface final : public QAccessibleWidget, public QAccessibleTableInterface {
 public:
  explicit GridInterface(CGridCtrl& grid)
      : QAccessibleWidget(&grid, QAccessible::Table), grid_(grid) {}
  ~GridInterface() override {
    for (const auto& [place, id] : cells_) QAccessible::deleteAccessibleInterface(id);
  }

  // Made when it is first asked for; null outside the grid.
  QAccessibleInterface* Cell(int row, int column) const;

  void* interface_cast(QAccessible::InterfaceType type) override {
    if (type != QAccessible::TableInterface) return QAccessibleWidget::interface_cast(type);
    return static_cast<QAccessibleTableInterface*>(this);
  }
  int childCount() const override { return grid_.Rows() * grid_.Columns(); }
  QAccessibleInterface* child(int index) const override {
    const int columns = std::max(grid_.Columns(), 1);
    return Cell(index / columns, index % columns);
  }
  int indexOfChild(const QAccessibleInterface* child) const override {
    const auto* const cell = dynamic_cast<const CellInterface*>(child);
    return cell == nullptr ? -1 : cell->Row() * grid_.Columns() + cell->Column();
  }
  QAccessibleInterface* childAt(int x, int y) const override {
    const QPoint at(x, y);
    const bool title_row = IsOver(*grid_.horizontalHeader(), at);
    const bool title_column = IsOver(*grid_.verticalHeader(), at);
    const QPoint inside = grid_.viewport()->mapFromGlobal(at);
    return Cell(title_row ? 0 : grid_.rowAt(inside.y()) + 1,
                title_column ? 0 : grid_.columnAt(inside.x()) + 1);
  }
  QAccessibleInterface* focusChild() const override {
    const QModelIndex index = grid_.currentIndex();
    if (!grid_.hasFocus() || !index.isValid()) return QAccessibleWidget::focusChild();
    return cellAt(index.row(), index.column());
  }

  QAccessibleInterface* cellAt(int row, int column) const override {
    return Cell(row + 1, column + 1);
  }
  int rowCount() const override { return grid_.model()->rowCount(); }
  int columnCount() const override { return grid_.model()->columnCount(); }
  QString columnDescription(int column) const override { return Title(column, Qt::Horizontal); }
  QString rowDescription(int row) const override { return Title(row, Qt::Vertical); }
  QAccessibleInterface* caption() const override { return nullptr; }
  QAccessibleInterface* summary() const override { return nullptr; }

  int selectedCellCount() const override {
    return static_cast<int>(grid_.selectionModel()->selectedIndexes().size());
  }
  QList<QAccessibleInterface*> selectedCells() const override {
    QList<QAccessibleInterface*> cells;
    for (const QModelIndex& index : grid_.selectionModel()->selectedIndexes()) {
      cells << cellAt(index.row(), index.column());
    }
    return cells;
  }
  QList<int> selectedRows() const override {
    QList<int> rows;
    for (const auto& index : grid_.selectionModel()->selectedRows()) rows << index.row();
    return rows;
  }
  QList<int> selectedColumns() const override {
    QList<int> columns;
    for (const auto& index : grid_.selectionModel()->selectedColumns()) columns << index.column();
    return columns;
  }
  int selectedRowCount() const override { return static_cast<int>(selectedRows().size()); }
  int selectedColumnCount() const override { return static_cast<int>(selectedColumns().size()); }
  bool isRowSelected(int row) const override { return selectedRows().contains(row); }
  bool isColumnSelected(int column) const override { return selectedColumns().contains(column); }
  // A selection is for copying, which the keyboard does.
  bool selectRow(int /*row*/) override { return false; }
  bool selectColumn(int /*column*/) override { return false; }
  bool unselectRow(int /*row*/) override { return false; }
  bool unselectColumn(int /*column*/) override { return false; }
  // Cells are known by their place alone, so none of them becomes another one.
  void modelChange(QAccessibleTableModelChangeEvent* /*event*/) override {}

 private:
  static bool IsOver(const QWidget& widget, const QPoint& at) {
    return widget.rect().contains(widget.mapFromGlobal(at));
  }
  QString Title(int section, Qt::Orientation side) const {
    return grid_.model()->headerData(section, side, Qt::AccessibleTextRole).toString();
  }

  CGridCtrl& grid_;
  mutable std::map<std::pair<int, int>, QAccessible::Id> cells_;
};

QAccessibleInterface* GridInterface::Cell(int row, int column) const {
  if (row < 0 || column < 0 || row >= grid_.Rows() || column >= grid_.Columns()) return nullptr;
  const auto [cell, added] = cells_.try_emplace({row, column});
  if (added) {
    cell->second = QAccessible::registerAccessibleInterface(new CellInterface(grid_, row, column));
  }
  return QAccessible::accessibleInterface(cell->second);
}

QAccessibleInterface* CellInterface::Sibling(int row, int column) const {
  const auto* const grid = dynamic_cast<GridInterface*>(parent());
  return grid == nullptr ? nullptr : grid->Cell(row, column);
}

QString CellInterface::text(QAccessible::Text kind) const {
  if (!isValid()) return {};
  if (kind == QAccessible::Name) {
    return IsTitle() ? grid_->Text(row_, column_).trimmed()
                     : Index().data(Qt::AccessibleTextRole).toString();
  }
  if (kind == QAccessible::Value && !IsTitle() && grid_->IsEnabledCell(row_, column_)) {
    return Model().Words(row_, column_).trimmed();
  }
  if (kind == QAccessible::Description && column_ > 0) {
    if (!IsTitle()) return Index().data(Qt::ToolTipRole).toString();
    return Model().headerData(column_ - 1, Qt::Horizontal, Qt::ToolTipRole).toString();
  }
  return {};
}

QRect CellInterface::rect() const {
  if (!isValid()) return {};
  const QHeaderView& columns = *grid_->horizontalHeader();
  const QHeaderView& rows = *grid_->verticalHeader();
  const int x = column_ == 0 ? -rows.width() : columns.sectionViewportPosition(column_ - 1);
  const int y = row_ == 0 ? -columns.height() : rows.sectionViewportPosition(row_ - 1);
  return {grid_->viewport()->mapToGlobal(QPoint(x, y)),
          QSize(column_ == 0 ? rows.width() : columns.sectionSize(column_ - 1),
                row_ == 0 ? columns.height() : rows.sectionSize(row_ - 1))};
}

QAccessible::Role CellInterface::role() const {
  if (!IsTitle()) return QAccessible::Cell;
  return row_ == 0 ? QAccessible::ColumnHeader : QAccessible::RowHeader;
}

QAccessible::State CellInterface::state() const {
  QAccessible::State state;
  state.invalid = !isValid();
  if (state.invalid) return state;
  const QWidget& shown = *grid_->viewport();
  state.invisible = !grid_->isVisible();
  state.offscreen =
      !IsTitle() && !QRect(shown.mapToGlobal(QPoint()), shown.size()).intersects(rect());
  if (IsTitle()) return state;
  const CellKind kind = grid_->Kind(row_, column_);
  state.disabled = !IsUsable();
  state.focusable = state.selectable = IsUsable();
  state.focused = grid_->hasFocus() && grid_->currentIndex() == Index();
  state.selected = isSelected();
  state.checkable = grid_->IsEnabledCell(row_, column_) && IsToggle(kind);
  state.checked = state.checkable && grid_->Value(row_, column_) != 0;
  state.editable = IsUsable() && kind == CellKind::kNumber;
  state.hasPopup = IsUsable() && kind == CellKind::kCombo;
  return state;
}

void* CellInterface::interface_cast(QAccessible::InterfaceType type) {
  if (type == QAccessible::TableCellInterface && !IsTitle()) {
    return static_cast<QAccessibleTableCellInterface*>(this);
  }
  if (type == QAccessible::ActionInterface) return static_cast<QAccessibleActionInterface*>(this);
  return nullptr;
}

QStringList CellInterface::actionNames() const {
  if (!IsUsable()) return {};
  const bool toggle = IsToggle(grid_->Kind(row_, column_));
  return {toggle ? toggleAction() : pressAction(), setFocusAction()};
}

void CellInterface::doAction(const QString& action) {
  if (!actionNames().contains(action)) return;
  // Ends what is still being typed elsewhere, as a click does.
  grid_->setFocus();
  grid_->setCurrentIndex(Index());
  if (action == setFocusAction() || !isValid()) return;
  if (grid_->Kind(row_, column_) == CellKind::kNumber) {
    grid_->edit(Index());
  } else {
    grid_->Click(row_, column_);
  }
}

QAccessibleInterface* MakeInterface(const QString& /*class_name*/, QObject* object) {
  auto* const grid = qobject_cast<CGridCtrl*>(object);
  return grid == nullptr ? nullptr : new GridInterface(*grid);
}

}  // namespace

void InstallGridAccessibility() { QAccessible::installFactory(MakeInterface); }

void TellToggled(CGridCtrl& grid, int row, int column) {
  if (!QAccessible::isActive()) return;
  QAccessible::State changed;
  changed.checked = true;
  QAccessibleStateChangeEvent event(&grid, changed);
  event.setChild(row * grid.Columns() + column);
  QAccessible::updateAccessibility(&event);
}

void TellFocused(CGridCtrl& grid) {
  const QModelIndex index = grid.currentIndex();
  if (!QAccessible::isActive() || !index.isValid()) return;
  QAccessibleEvent event(&grid, QAccessible::Focus);
  event.setChild(GridModel::RowOf(index) * grid.Columns() + GridModel::ColumnOf(index));
  QAccessible::updateAccessibility(&event);
}

}  // namespace quillon
