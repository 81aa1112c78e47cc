// SPDX-License-Identifier: MIT
#include "app/CImageButton.h"

#include <QStyleOptionButton>
#include <QStylePainter>

namespace quillon {
namespace {

constexpr int kImageSize = 48;
constexpr int kAir = 10;  // left of the image, between it and the text, and right of the text

}  // namespace

CImageButton::CImageButton(const QIcon& image, const QString& text, QWidget* parent)
    : QPushButton(image, text, parent) {
  setIconSize({kImageSize, kImageSize});
}

int CImageButton::TextWidth() const {
  return fontMetrics().size(Qt::TextShowMnemonic, text()).width();
}

QSize CImageButton::sizeHint() const {
  const QSize mine(3 * kAir + kImageSize + TextWidth(), 0);
  return QPushButton::sizeHint().expandedTo(mine);
}

void CImageButton::paintEvent(QPaintEvent* /*event*/) {
  QStylePainter painter(this);
  QStyleOptionButton whole;
  initStyleOption(&whole);
  // The style centres what it draws, so image and text each get a place of just their size.
  const auto draw = [&](QStyle::ControlElement part, const QRect& place, bool image, bool text) {
    QStyleOptionButton option = whole;
    option.rect = QStyle::visualRect(layoutDirection(), rect(), place);
    if (!image) option.icon = {};
    if (!text) option.text.clear();
    painter.drawControl(part, option);
  };
  draw(QStyle::CE_PushButton, rect(), false, false);
  draw(QStyle::CE_PushButtonLabel, {kAir, 0, kImageSize, height()}, true, false);
  const int start = 2 * kAir + kImageSize;
  draw(QStyle::CE_PushButtonLabel, {start, 0, TextWidth(), height()}, false, true);
}

}  // namespace quillon
