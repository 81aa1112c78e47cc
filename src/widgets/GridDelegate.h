// SPDX-License-Identifier: MIT
#pragma once

#include <QHash>
#include <QIcon>
#include <QLineEdit>
#include <QPixmap>
#include <QPointer>
#include <QStyledItemDelegate>
#include <optional>

#include "widgets/GridModel.h"

namespace quillon {

// A number that the user has typed into a cell.
struct GridEntry {
  int row = 0;
  int column = 0;
  QString text;
};

// Paints a grid's cells straight from its model, and edits its number cells. A finished entry is
// not written to the model: the grid takes it once the editor is closed, because the page's handler
// may open a message box.
class GridDelegate : public QStyledItemDelegate {
  Q_OBJECT

 public:
  GridDelegate(const GridModel& model, QObject* parent);

  void SetToggleImages(const QIcon& off, const QIcon& on);
  // Forgets the tones and images that it keeps; to be called for a new palette or style.
  void Forget();

  // The width that shows the whole cell (its text, the bounds of its number, its arrow or box), and
  // the one that its widest choice needs.
  int WidthOf(const GridCell& cell, const QFontMetrics& metrics) const;
  int WidthOfChoices(const GridCell& cell, const QFontMetrics& metrics) const;

  QLineEdit* Editor() const { return editor_; }
  std::optional<GridEntry> TakeEntry() { return std::exchange(entry_, {}); }

  void paint(QPainter* painter, const QStyleOptionViewItem& option,
             const QModelIndex& index) const override;
  QWidget* createEditor(QWidget* parent, const QStyleOptionViewItem& option,
                        const QModelIndex& index) const override;
  void setEditorData(QWidget* editor, const QModelIndex& index) const override;
  void setModelData(QWidget* editor, QAbstractItemModel* model,
                    const QModelIndex& index) const override;
  void updateEditorGeometry(QWidget* editor, const QStyleOptionViewItem& option,
                            const QModelIndex& index) const override;
  // The wheel scrolls the grid over an open editor too.
  bool eventFilter(QObject* editor, QEvent* event) override;

 private:
  void PaintGround(QPainter* painter, const QStyleOptionViewItem& option,
                   const GridCell& cell) const;
  void PaintText(QPainter* painter, const QStyleOptionViewItem& option, const GridCell& cell) const;
  void PaintToggle(QPainter* painter, const QStyleOptionViewItem& option,
                   const GridCell& cell) const;
  void PaintProgress(QPainter* painter, const QStyleOptionViewItem& option,
                     const GridCell& cell) const;
  QColor Tone(QRgb given, const QPalette& palette) const;
  QPixmap DrawToggle(const QStyleOptionViewItem& option, CellKind kind, bool on, bool enabled,
                     qreal ratio) const;

  const GridModel& model_;
  QIcon off_;
  QIcon on_;
  mutable QHash<QRgb, QColor> tones_;
  mutable QHash<int, QPixmap> toggles_;
  mutable QPointer<QLineEdit> editor_;
  mutable std::optional<GridEntry> entry_;
};

}  // namespace quillon
