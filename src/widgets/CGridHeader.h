// SPDX-License-Identifier: MIT
#pragma once

#include <QHeaderView>

namespace quillon {

// A grid's row or column titles, painted flat on the background that the page gives each of them
// (styles put their own shades over it).
class CGridHeader : public QHeaderView {
  Q_OBJECT

 public:
  CGridHeader(Qt::Orientation orientation, QWidget* parent);

 protected:
  void paintSection(QPainter* painter, const QRect& rect, int section) const override;
  void paintEvent(QPaintEvent* event) override;
  // The width counts the blanks around a title, which pages use to make room.
  QSize sectionSizeFromContents(int section) const override;
};

}  // namespace quillon
