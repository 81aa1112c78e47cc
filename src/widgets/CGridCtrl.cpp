// SPDX-License-Identifier: MIT
#include "widgets/CGridCtrl.h"

#include <QClipboard>
#include <QGuiApplication>
#include <QKeyEvent>
#include <QScrollBar>
#include <algorithm>

#include "widgets/CChoiceList.h"
#include "widgets/CGridHeader.h"
#include "widgets/CScrollPane.h"
#include "widgets/GridAccessibility.h"
#include "widgets/GridDelegate.h"
#include "widgets/GridModel.h"

namespace quillon {
namespace {

constexpr int kRowHeight = 22;
constexpr int kRowAir = 6;
constexpr int kHintRows = 16;

}  // namespace

CGridCtrl::CGridCtrl(QWidget* parent)
    : QTableView(parent), model_(new GridModel(this)), delegate_(new GridDelegate(*model_, this)) {
  InstallGridAccessibility();
  setHorizontalHeader(new CGridHeader(Qt::Horizontal, this));
  setVerticalHeader(new CGridHeader(Qt::Vertical, this));
  verticalHeader()->setSectionResizeMode(QHeaderView::Fixed);
  setModel(model_);
  setItemDelegate(delegate_);
  setTabKeyNavigation(false);
  setCornerButtonEnabled(false);
  setWordWrap(false);
  setEditTriggers(EditKeyPressed | AnyKeyPressed | DoubleClicked);
  setVerticalScrollMode(ScrollPerPixel);
  setHorizontalScrollMode(ScrollPerPixel);
  FitRows();
  // Longer row titles need a wider header, which Qt makes only when the view is resized.
  connect(model_, &GridModel::headerDataChanged, this, [this](Qt::Orientation titles) {
    if (titles == Qt::Vertical) updateGeometries();
  });
  connect(this, &QTableView::clicked, this, [this](const QModelIndex& index) {
    if (click_keys_ & (Qt::ShiftModifier | Qt::ControlModifier)) return;  // selects
    Click(GridModel::RowOf(index), GridModel::ColumnOf(index));
  });
}

CGridCtrl::~CGridCtrl() = default;

void CGridCtrl::Resize(int rows, int columns) {
  CloseChoices();
  model_->Resize(rows, columns);
}

int CGridCtrl::Rows() const { return model_->Rows(); }
int CGridCtrl::Columns() const { return model_->Columns(); }

QString CGridCtrl::Text(int row, int column) const { return model_->Cell(row, column).text; }

void CGridCtrl::SetText(int row, int column, const QString& text) {
  if (Text(row, column) != text) model_->Change(row, column).text = text;
}

std::uint32_t CGridCtrl::Value(int row, int column) const {
  return model_->Cell(row, column).value;
}

void CGridCtrl::SetValue(int row, int column, std::uint32_t value) {
  if (Value(row, column) != value) model_->Change(row, column).value = value;
}

std::optional<QRgb> CGridCtrl::Background(int row, int column) const {
  return model_->Cell(row, column).background;
}

void CGridCtrl::SetBackground(int row, int column, std::optional<QRgb> colour) {
  if (Background(row, column) != colour) model_->Change(row, column).background = colour;
}

CellKind CGridCtrl::Kind(int row, int column) const { return model_->Cell(row, column).kind; }

void CGridCtrl::SetKind(int row, int column, CellKind kind) {
  model_->Change(row, column).kind = kind;
}

void CGridCtrl::SetCombo(int row, int column, const QStringList& choices) {
  GridCell& cell = model_->Change(row, column);
  cell.kind = CellKind::kCombo;
  cell.choices = choices;
}

void CGridCtrl::SetNumber(int row, int column, int minimum, int maximum) {
  GridCell& cell = model_->Change(row, column);
  cell.kind = CellKind::kNumber;
  cell.minimum = minimum;
  cell.maximum = maximum;
}

void CGridCtrl::SetEnabledCell(int row, int column, bool enabled) {
  model_->Change(row, column).enabled = enabled;
}

bool CGridCtrl::IsEnabledCell(int row, int column) const {
  return model_->Cell(row, column).enabled;
}

void CGridCtrl::SetMarked(int row, int column, bool marked, bool edited) {
  const GridCell& now = model_->Cell(row, column);
  if (now.marked == marked && now.edited == (marked && edited)) return;
  GridCell& cell = model_->Change(row, column);
  cell.marked = marked;
  cell.edited = marked && edited;
}

bool CGridCtrl::IsMarked(int row, int column) const { return model_->Cell(row, column).marked; }

void CGridCtrl::SetToggleImages(const QIcon& off, const QIcon& on) {
  delegate_->SetToggleImages(off, on);
  viewport()->update();
}

void CGridCtrl::SetToolTips(std::function<QString(int row, int column)> tool_tips) {
  model_->SetToolTips(std::move(tool_tips));
}

void CGridCtrl::HighlightRow(int row, QRgb row_colour, QRgb others_colour) {
  for (int r = 1; r < Rows(); ++r) {
    for (int c = 1; c < Columns(); ++c) SetBackground(r, c, r == row ? row_colour : others_colour);
  }
}

void CGridCtrl::FitColumns() {
  fitted_ = true;
  for (int column = 1; column < Columns(); ++column) {
    int width = horizontalHeader()->sectionSizeHint(column - 1);
    const QString* measured = nullptr;
    for (int row = 1; row < Rows(); ++row) {
      const GridCell& cell = model_->Cell(row, column);
      width = std::max(width, delegate_->WidthOf(cell, fontMetrics()));
      // Long lists are shared by the cells of a column: measure each once.
      if (cell.choices.isEmpty() || cell.choices.constData() == measured) continue;
      measured = cell.choices.constData();
      width = std::max(width, delegate_->WidthOfChoices(cell, fontMetrics()));
    }
    setColumnWidth(column - 1, width + 1);
  }
}

void CGridCtrl::Redraw() {
  model_->Redraw();
  emit Redrawn();
}

void CGridCtrl::SetClickHandler(ClickHandler handler) { click_ = std::move(handler); }
void CGridCtrl::SetEndEditHandler(EndEditHandler handler) { end_edit_ = std::move(handler); }

void CGridCtrl::Click(int row, int column) {
  if (row < 1 || column < 1 || !model_->Holds(row, column)) return;
  const QPointer<CGridCtrl> self(this);
  const bool toggles = IsToggle(Kind(row, column)) && IsEnabledCell(row, column);
  if (toggles) SetValue(row, column, Value(row, column) == 0 ? 1 : 0);
  if (click_) click_(row, column);
  if (!self) return;
  Redraw();
  if (model_->Holds(row, column) && IsToggle(Kind(row, column))) TellToggled(*this, row, column);
  Open(row, column);
}

void CGridCtrl::Enter(int row, int column, const QString& text) {
  if (!model_->Holds(row, column) || !IsEnabledCell(row, column)) return;
  const QPointer<CGridCtrl> self(this);
  const QString old_text = Text(row, column);
  const std::uint32_t old_value = Value(row, column);
  SetText(row, column, text);
  if (Kind(row, column) == CellKind::kNumber) {
    SetValue(row, column, static_cast<std::uint32_t>(text.toInt()));
  }
  const bool kept = !end_edit_ || end_edit_(row, column);
  if (!self) return;
  entry_kept_ = kept;
  if (!kept && model_->Holds(row, column)) {
    SetText(row, column, old_text);
    SetValue(row, column, old_value);
  }
  Redraw();
  if (!kept) emit EntryRefused();
}

bool CGridCtrl::FinishEdit() {
  CloseChoices();
  QLineEdit* editor = delegate_->Editor();
  if (editor == nullptr || state() != EditingState) return true;
  entry_kept_ = true;
  commitData(editor);
  closeEditor(editor, QAbstractItemDelegate::NoHint);
  return entry_kept_;
}

void CGridCtrl::Open(int row, int column) {
  if (!model_->Holds(row, column) || !IsEnabledCell(row, column)) return;
  const GridCell& cell = model_->Cell(row, column);
  if (cell.kind != CellKind::kCombo || cell.choices.isEmpty() || !isVisible()) return;
  const QModelIndex index = model_->IndexOf(row, column);
  setCurrentIndex(index);
  scrollTo(index);
  if (choices_ == nullptr) MakeChoices();
  const QRect rect = visualRect(index);
  choices_->setAccessibleName(index.data(Qt::AccessibleTextRole).toString());
  choices_->Open(cell.choices, cell.text,
                 QRect(viewport()->mapToGlobal(rect.topLeft()), rect.size()));
}

// Not before it is needed: most grids are never edited in a run of the program.
void CGridCtrl::MakeChoices() {
  choices_ = new CChoiceList(this);
  connect(choices_, &CChoiceList::Chosen, this, [this](const QString& text) {
    const QModelIndex index = currentIndex();
    if (index.isValid()) Enter(GridModel::RowOf(index), GridModel::ColumnOf(index), text);
  });
}

void CGridCtrl::CloseChoices() {
  if (choices_ != nullptr) choices_->hide();
}

QSize CGridCtrl::sizeHint() const {
  const int frame = 2 * frameWidth();
  const int rows = std::min(model_->rowCount(), kHintRows);
  return {verticalHeader()->sizeHint().width() + horizontalHeader()->length() +
              verticalScrollBar()->sizeHint().width() + frame,
          horizontalHeader()->sizeHint().height() + rows * verticalHeader()->defaultSectionSize() +
              frame};
}

void CGridCtrl::keyPressEvent(QKeyEvent* event) {
  if (event->matches(QKeySequence::Copy)) {
    Copy();
  } else if (!CellKey(*event)) {
    QTableView::keyPressEvent(event);
  }
}

// True when the key meant the current cell and is used up.
bool CGridCtrl::CellKey(const QKeyEvent& event) {
  const QModelIndex index = currentIndex();
  if (!index.isValid()) return false;
  const int row = GridModel::RowOf(index);
  const int column = GridModel::ColumnOf(index);
  const Qt::KeyboardModifiers keys = event.modifiers() & ~Qt::KeypadModifier;
  const bool plain = keys == Qt::NoModifier || keys == Qt::ShiftModifier;
  if (event.key() == Qt::Key_Space && plain) {
    Click(row, column);
    return true;
  }
  const CellKind kind = Kind(row, column);
  const bool enter = plain && (event.key() == Qt::Key_Return || event.key() == Qt::Key_Enter);
  const bool printable = plain && !event.text().isEmpty() && event.text().at(0).isPrint();
  if (kind == CellKind::kCombo) {
    const bool down = event.key() == Qt::Key_Down && keys == Qt::AltModifier;
    if (!down && !enter && !printable && event.key() != Qt::Key_F2) return false;
    Open(row, column);
    if (printable && choices_ != nullptr) choices_->Search(event.text());
    return true;
  }
  if (kind == CellKind::kNumber && enter) {
    if (state() != EditingState) edit(index);  // else the editor's own, on its way to the dialog
    return true;
  }
  // Only what a number can begin with may open its editor.
  const bool digit = printable && (event.text().at(0).isDigit() || event.text() == u"-");
  return printable && !(kind == CellKind::kNumber && digit);
}

void CGridCtrl::mouseDoubleClickEvent(QMouseEvent* event) {
  const QModelIndex index = indexAt(event->position().toPoint());
  if (index.isValid() && (index.flags() & Qt::ItemIsEditable)) {
    QTableView::mouseDoubleClickEvent(event);
  } else {
    mousePressEvent(event);  // so that two quick clicks on a box are two
  }
}

void CGridCtrl::mouseReleaseEvent(QMouseEvent* event) {
  click_keys_ = event->modifiers();
  QTableView::mouseReleaseEvent(event);
}

// On a small screen the grid may itself be larger than what can be seen of it.
void CGridCtrl::currentChanged(const QModelIndex& current, const QModelIndex& previous) {
  QTableView::currentChanged(current, previous);
  const bool by_key = hasFocus() && QGuiApplication::mouseButtons() == Qt::NoButton;
  if (by_key) CScrollPane::BringIntoView(*viewport(), visualRect(current));
}

void CGridCtrl::closeEditor(QWidget* editor, QAbstractItemDelegate::EndEditHint hint) {
  const auto* const line = qobject_cast<QLineEdit*>(editor);
  const bool given_up = hint == QAbstractItemDelegate::RevertModelCache;
  const bool refused = line != nullptr && !given_up && !line->hasAcceptableInput();
  QTableView::closeEditor(editor, QAbstractItemDelegate::NoHint);  // no hint moves to the next cell
  const std::optional<GridEntry> entry = delegate_->TakeEntry();
  if (entry) {
    Enter(entry->row, entry->column, entry->text);
  } else if (refused) {
    entry_kept_ = false;
    emit EntryRefused();
  }
}

void CGridCtrl::changeEvent(QEvent* event) {
  QTableView::changeEvent(event);
  const bool font = event->type() == QEvent::FontChange;
  const bool style = event->type() == QEvent::StyleChange;
  if (style || event->type() == QEvent::PaletteChange) delegate_->Forget();
  if (!font && !style) return;
  FitRows();
  if (fitted_) FitColumns();
}

void CGridCtrl::focusInEvent(QFocusEvent* event) {
  QTableView::focusInEvent(event);
  // Later: after this, Qt tells screen readers of the grid as a whole.
  QMetaObject::invokeMethod(
      this,
      [this] {
        if (hasFocus()) TellFocused(*this);
      },
      Qt::QueuedConnection);
}

void CGridCtrl::hideEvent(QHideEvent* event) {
  CloseChoices();
  QTableView::hideEvent(event);
}

void CGridCtrl::Copy() const {
  QModelIndexList cells = selectedIndexes();
  if (cells.isEmpty() && currentIndex().isValid()) cells = {currentIndex()};
  if (cells.isEmpty()) return;
  QRect area;
  for (const QModelIndex& cell : cells) area |= QRect(cell.column(), cell.row(), 1, 1);
  QStringList lines;
  for (int row = area.top(); row <= area.bottom(); ++row) {
    QStringList words;
    for (int column = area.left(); column <= area.right(); ++column) {
      const bool taken = cells.contains(model_->index(row, column));
      words << (taken ? model_->Words(row + 1, column + 1).trimmed() : QString());
    }
    lines << words.join(u'\t');
  }
  QGuiApplication::clipboard()->setText(lines.join(u'\n'));
}

void CGridCtrl::FitRows() {
  verticalHeader()->setDefaultSectionSize(std::max(kRowHeight, fontMetrics().height() + kRowAir));
}

}  // namespace quillon
