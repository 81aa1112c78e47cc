// SPDX-License-Identifier: MIT
#include "widgets/GridDelegate.h"

#include <QCoreApplication>
#include <QIntValidator>
#include <QPainter>
#include <QStyle>
#include <QStyleOptionButton>
#include <algorithm>
#include <cmath>

#include "widgets/Tone.h"

namespace quillon {
namespace {

constexpr int kMargin = 6;
constexpr int kImage = 16;
constexpr int kArrowRoom = 16;
constexpr int kMark = 8;
constexpr int kBarMargin = 2;
// A text may be a part of a pixel wider than its rounded width, and would be cut.
constexpr int kRounding = 1;
constexpr double kHatching = 0.14;

void PaintArrow(QPainter* painter, const QRect& rect, const QColor& colour) {
  const QPointF tip(rect.right() - kArrowRoom / 2.0, rect.center().y() + 2.5);
  const QPointF arrow[] = {tip + QPointF(-3.5, -3.5), tip, tip + QPointF(3.5, -3.5)};
  painter->setRenderHint(QPainter::Antialiasing);
  painter->setPen(QPen(colour, 1.5));
  painter->drawPolyline(arrow, 3);
  painter->setRenderHint(QPainter::Antialiasing, false);
}

void PaintMark(QPainter* painter, const QRect& rect, const QColor& colour) {
  const QPoint corner = rect.topRight() + QPoint(1, 0);
  const QPoint triangle[] = {corner, corner + QPoint(-kMark, 0), corner + QPoint(0, kMark)};
  painter->setPen(Qt::NoPen);
  painter->setBrush(colour);
  painter->drawPolygon(triangle, 3);
}

void PaintFocus(QPainter* painter, const QRect& rect, const QColor& colour) {
  QPen pen(colour, 2);
  pen.setJoinStyle(Qt::MiterJoin);
  painter->setPen(pen);
  painter->setBrush(Qt::NoBrush);
  painter->drawRect(rect.adjusted(1, 1, -1, -1));
}

QColor Mixed(const QColor& ground, const QColor& over, double part) {
  const auto mix = [part](int low, int high) {
    return static_cast<int>(std::lround(low + (high - low) * part));
  };
  return {mix(ground.red(), over.red()), mix(ground.green(), over.green()),
          mix(ground.blue(), over.blue())};
}

}  // namespace

GridDelegate::GridDelegate(const GridModel& model, QObject* parent)
    : QStyledItemDelegate(parent), model_(model) {}

void GridDelegate::SetToggleImages(const QIcon& off, const QIcon& on) {
  off_ = off;
  on_ = on;
  toggles_.clear();
}

void GridDelegate::Forget() {
  tones_.clear();
  toggles_.clear();
}

int GridDelegate::WidthOf(const GridCell& cell, const QFontMetrics& metrics) const {
  if (!cell.enabled) return 0;
  int width = metrics.horizontalAdvance(cell.text) + kRounding;
  if (cell.kind == CellKind::kNamedCheckBox) return kImage + width + 3 * kMargin;
  if (IsToggle(cell.kind)) return kImage + 2 * kMargin;
  if (cell.kind == CellKind::kNumber) {
    width = std::max({width, metrics.horizontalAdvance(QString::number(cell.minimum)),
                      metrics.horizontalAdvance(QString::number(cell.maximum))});
  }
  return width + 2 * kMargin + (cell.kind == CellKind::kCombo ? kArrowRoom : 0);
}

int GridDelegate::WidthOfChoices(const GridCell& cell, const QFontMetrics& metrics) const {
  int width = 0;
  for (const QString& choice : cell.choices) {
    width = std::max(width, metrics.horizontalAdvance(choice));
  }
  return width + 2 * kMargin + kArrowRoom;
}

void GridDelegate::paint(QPainter* painter, const QStyleOptionViewItem& option,
                         const QModelIndex& index) const {
  const GridCell& cell = model_.Cell(GridModel::RowOf(index), GridModel::ColumnOf(index));
  PaintGround(painter, option, cell);
  if (cell.kind == CellKind::kProgress) {
    PaintProgress(painter, option, cell);
  } else if (!IsToggle(cell.kind)) {
    PaintText(painter, option, cell);
  } else if (cell.enabled) {
    PaintToggle(painter, option, cell);
  }
  if (cell.marked) PaintMark(painter, option.rect, option.palette.color(QPalette::Highlight));
  if (option.state & QStyle::State_HasFocus) {
    PaintFocus(painter, option.rect, option.palette.color(QPalette::Highlight));
  }
}

void GridDelegate::PaintGround(QPainter* painter, const QStyleOptionViewItem& option,
                               const GridCell& cell) const {
  QColor ground = cell.background ? Tone(*cell.background, option.palette)
                                  : option.palette.color(QPalette::Base);
  // The current cell keeps its colour and has the frame; a selection is for copying.
  if ((option.state & QStyle::State_Selected) && !(option.state & QStyle::State_HasFocus)) {
    ground = Mixed(ground, option.palette.color(QPalette::Highlight), 0.3);
  }
  painter->fillRect(option.rect, ground);
  if (cell.enabled) return;
  // Intended on every ground, that of the clicked row too: where a row has no cell nothing can be
  // set. Lines, because a shade over the whole cell would change the page's colour.
  const QColor text = option.palette.color(QPalette::Active, QPalette::Text);
  painter->setBrushOrigin(option.rect.topLeft());
  painter->fillRect(option.rect, QBrush(Mixed(ground, text, kHatching), Qt::BDiagPattern));
}

void GridDelegate::PaintText(QPainter* painter, const QStyleOptionViewItem& option,
                             const GridCell& cell) const {
  const QColor colour = option.palette.color(QPalette::Text);
  QRect room = option.rect.adjusted(kMargin, 0, -kMargin, 0);
  if (cell.kind == CellKind::kCombo && cell.enabled) {
    PaintArrow(painter, option.rect, colour);
    room.setRight(option.rect.right() - kArrowRoom);
  }
  if (cell.text.isEmpty()) return;
  const int side = cell.kind == CellKind::kNumber ? Qt::AlignHCenter : Qt::AlignLeft;
  painter->setPen(colour);
  painter->drawText(room, side | Qt::AlignVCenter | Qt::TextSingleLine,
                    option.fontMetrics.elidedText(cell.text, Qt::ElideRight, room.width()));
}

void GridDelegate::PaintToggle(QPainter* painter, const QStyleOptionViewItem& option,
                               const GridCell& cell) const {
  const bool on = cell.value != 0;
  const bool enabled = option.state & QStyle::State_Enabled;
  const qreal ratio = painter->device()->devicePixelRatioF();
  const int key = static_cast<int>(cell.kind) * 4 + (on ? 2 : 0) + (enabled ? 1 : 0);
  QPixmap& image = toggles_[key];
  if (image.isNull() || !qFuzzyCompare(image.devicePixelRatio(), ratio)) {
    image = DrawToggle(option, cell.kind, on, enabled, ratio);
  }
  const QSize size = image.deviceIndependentSize().toSize();
  const bool named = cell.kind == CellKind::kNamedCheckBox;
  const QRect& rect = option.rect;
  painter->drawPixmap(rect.left() + (named ? kMargin : (rect.width() - size.width()) / 2),
                      rect.top() + (rect.height() - size.height()) / 2, image);
  if (!named) return;
  QStyleOptionViewItem beside(option);
  beside.rect.setLeft(rect.left() + kMargin + size.width());
  PaintText(painter, beside, cell);
}

void GridDelegate::PaintProgress(QPainter* painter, const QStyleOptionViewItem& option,
                                 const GridCell& cell) const {
  QStyleOptionProgressBar bar;
  bar.initFrom(option.widget);
  bar.state |= QStyle::State_Horizontal;
  bar.rect = option.rect.adjusted(kBarMargin, kBarMargin, -kBarMargin, -kBarMargin);
  bar.maximum = 100;
  bar.progress = static_cast<int>(cell.value);
  bar.text = cell.text;
  bar.textVisible = true;
  bar.textAlignment = Qt::AlignCenter;
  option.widget->style()->drawControl(QStyle::CE_ProgressBar, &bar, painter, option.widget);
}

QPixmap GridDelegate::DrawToggle(const QStyleOptionViewItem& option, CellKind kind, bool on,
                                 bool enabled, qreal ratio) const {
  const QIcon& icon = on ? on_ : off_;
  if (kind == CellKind::kImageToggle && !icon.isNull()) {
    return icon.pixmap({kImage, kImage}, ratio, enabled ? QIcon::Normal : QIcon::Disabled);
  }
  const QStyle* style = option.widget->style();
  const bool round = kind == CellKind::kRadio;
  QStyleOptionButton box;
  box.initFrom(option.widget);
  box.state = (enabled ? QStyle::State_Enabled : QStyle::State_None) |
              (on ? QStyle::State_On : QStyle::State_Off);
  if (IsDark(box.palette)) {
    // Styles outline a box in a shade darker than the window, which nobody sees on a dark ground.
    box.palette.setColor(QPalette::Window, box.palette.color(QPalette::Text));
  }
  box.rect = style->subElementRect(
      round ? QStyle::SE_RadioButtonIndicator : QStyle::SE_CheckBoxIndicator, &box, option.widget);
  box.rect.moveTo(0, 0);
  QPixmap image((QSizeF(box.rect.size()) * ratio).toSize());
  image.setDevicePixelRatio(ratio);
  image.fill(Qt::transparent);
  QPainter painter(&image);
  style->drawPrimitive(round ? QStyle::PE_IndicatorRadioButton : QStyle::PE_IndicatorCheckBox, &box,
                       &painter, option.widget);
  return image;
}

QColor GridDelegate::Tone(QRgb given, const QPalette& palette) const {
  QColor& tone = tones_[given];
  if (!tone.isValid()) tone = ToneFor(given, palette);
  return tone;
}

QWidget* GridDelegate::createEditor(QWidget* parent, const QStyleOptionViewItem&,
                                    const QModelIndex& index) const {
  const GridCell& cell = model_.Cell(GridModel::RowOf(index), GridModel::ColumnOf(index));
  editor_ = new QLineEdit(parent);
  auto* range = new QIntValidator(cell.minimum, cell.maximum, editor_);
  QLocale plain = QLocale::c();
  plain.setNumberOptions(QLocale::RejectGroupSeparator);
  range->setLocale(plain);
  editor_->setValidator(range);
  editor_->setFrame(false);
  editor_->setAlignment(Qt::AlignHCenter);
  editor_->setAccessibleName(index.data(Qt::AccessibleTextRole).toString());
  return editor_;
}

void GridDelegate::setEditorData(QWidget*, const QModelIndex& index) const {
  if (editor_) editor_->setText(index.data(Qt::EditRole).toString());
}

void GridDelegate::setModelData(QWidget*, QAbstractItemModel*, const QModelIndex& index) const {
  if (!editor_ || !editor_->isModified() || !editor_->hasAcceptableInput()) return;
  entry_ = {GridModel::RowOf(index), GridModel::ColumnOf(index),
            QString::number(editor_->text().toInt())};
}

void GridDelegate::updateEditorGeometry(QWidget* editor, const QStyleOptionViewItem& option,
                                        const QModelIndex&) const {
  editor->setGeometry(option.rect);
}

bool GridDelegate::eventFilter(QObject* editor, QEvent* event) {
  if (event->type() != QEvent::Wheel) return QStyledItemDelegate::eventFilter(editor, event);
  return QCoreApplication::sendEvent(editor->parent(), event);
}

}  // namespace quillon
