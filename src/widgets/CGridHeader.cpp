// SPDX-License-Identifier: MIT
#include "widgets/CGridHeader.h"

#include <QPainter>

#include "widgets/Tone.h"

namespace quillon {
namespace {

constexpr int kMargin = 7;

}  // namespace

CGridHeader::CGridHeader(Qt::Orientation orientation, QWidget* parent)
    : QHeaderView(orientation, parent) {
  setSectionsClickable(false);
  setHighlightSections(false);
}

void CGridHeader::paintSection(QPainter* painter, const QRect& rect, int section) const {
  const QVariant given = model()->headerData(section, orientation(), Qt::BackgroundRole);
  const QColor ground = given.isValid() ? ToneFor(given.value<QBrush>().color().rgb(), palette())
                                        : palette().color(QPalette::Button);
  painter->fillRect(rect, ground);
  const QColor line = IsDark(palette()) ? ground.lighter(150) : ground.darker(125);
  painter->setPen(line);
  painter->drawLine(rect.bottomLeft(), rect.bottomRight());
  painter->drawLine(rect.topRight(), rect.bottomRight());
  // A given tone belongs to the cells, whose text is readable on it; a button's text need not be.
  painter->setPen(palette().color(given.isValid() ? QPalette::Text : QPalette::ButtonText));
  const QString title = model()->headerData(section, orientation()).toString().trimmed();
  const bool columns = orientation() == Qt::Horizontal;
  const QRect room = rect.adjusted(columns ? 2 : kMargin, 0, -2, 0);
  const int side = columns ? Qt::AlignHCenter : Qt::AlignLeft;
  painter->drawText(room, side | Qt::AlignVCenter,
                    fontMetrics().elidedText(title, Qt::ElideRight, room.width()));
}

// The part without titles is painted flat too.
void CGridHeader::paintEvent(QPaintEvent* event) {
  QHeaderView::paintEvent(event);
  QRect rest = viewport()->rect();
  const int used = length() - offset();
  orientation() == Qt::Horizontal ? rest.setLeft(used) : rest.setTop(used);
  if (rest.isValid()) QPainter(viewport()).fillRect(rest, palette().color(QPalette::Button));
}

QSize CGridHeader::sectionSizeFromContents(int section) const {
  const QString title = model()->headerData(section, orientation()).toString();
  return {fontMetrics().horizontalAdvance(title) + 2 * kMargin, fontMetrics().height() + 8};
}

}  // namespace quillon
