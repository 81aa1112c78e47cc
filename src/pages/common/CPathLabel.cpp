// SPDX-License-Identifier: MIT
#include "pages/common/CPathLabel.h"

#include <QPainter>
#include <QTextDocument>

namespace quillon {

CPathLabel::CPathLabel(QWidget* parent) : QLabel(QStringLiteral("File : "), parent) {
  setTextFormat(Qt::PlainText);
  setSizePolicy(QSizePolicy::Ignored, QSizePolicy::Fixed);
}

void CPathLabel::ShowPath(const QString& path) {
  setText(QStringLiteral("File : ") + path);
  setToolTip(Qt::convertFromPlainText(path));
}

void CPathLabel::paintEvent(QPaintEvent* /*event*/) {
  QPainter painter(this);
  const QRect place = contentsRect();
  painter.drawText(place, Qt::AlignLeft | Qt::AlignVCenter | Qt::TextSingleLine,
                   fontMetrics().elidedText(text(), Qt::ElideMiddle, place.width()));
}

}  // namespace quillon
