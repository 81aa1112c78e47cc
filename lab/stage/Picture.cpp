// SPDX-License-Identifier: MIT
#include "stage/Picture.h"

#include <QApplication>
#include <QPainter>
#include <QWidget>
#include <algorithm>
#include <stdexcept>
#include <vector>

namespace quillon::stage {
namespace {

constexpr int kFrame = 1;
constexpr int kCaptionAir = 10;

bool HasFrame(const QWidget& widget) {
  return widget.windowType() == Qt::Dialog || widget.windowType() == Qt::Sheet;
}

QRect PlaceOf(const QWidget& widget) {
  if (!HasFrame(widget)) return widget.geometry();
  const int caption = widget.fontMetrics().height() + kCaptionAir;
  return widget.geometry().adjusted(-kFrame, -caption, kFrame, kFrame);
}

std::vector<QWidget*> ShownOver(const QWidget& window) {
  std::vector<QWidget*> shown;
  for (QWidget* const widget : QApplication::topLevelWidgets()) {
    if (widget != &window && widget->isVisible()) shown.push_back(widget);
  }
  // Menus and lists lie over dialogs.
  std::stable_partition(shown.begin(), shown.end(), [](QWidget* w) { return HasFrame(*w); });
  return shown;
}

void PaintFrame(QPainter& painter, const QWidget& dialog) {
  const QRect place = PlaceOf(dialog);
  const QPalette& palette = dialog.palette();
  QRect caption = place;
  caption.setBottom(dialog.geometry().top() - 1);
  painter.fillRect(place, palette.color(QPalette::Mid));
  painter.setPen(palette.color(QPalette::WindowText));
  painter.drawText(caption.adjusted(kCaptionAir, 0, -kCaptionAir, 0),
                   Qt::AlignLeft | Qt::AlignVCenter, dialog.windowTitle());
}

}  // namespace

QPixmap PictureOf(QWidget& window) {
  const std::vector<QWidget*> over = ShownOver(window);
  QRect area = window.geometry();
  for (const QWidget* const widget : over) area |= PlaceOf(*widget);
  const qreal ratio = window.devicePixelRatioF();
  QPixmap picture((QSizeF(area.size()) * ratio).toSize());
  picture.setDevicePixelRatio(ratio);
  // Without need a picture is opaque: some programs take long over one that may not be.
  if (area != window.geometry()) picture.fill(Qt::transparent);
  QPainter painter(&picture);
  painter.setFont(window.font());
  painter.translate(-area.topLeft());
  painter.drawPixmap(window.geometry().topLeft(), window.grab());
  for (QWidget* const widget : over) {
    if (HasFrame(*widget)) PaintFrame(painter, *widget);
    painter.drawPixmap(widget->geometry().topLeft(), widget->grab());
  }
  return picture;
}

void SavePicture(const QPixmap& picture, const QString& file) {
  if (!picture.save(file, "PNG")) {
    throw std::runtime_error("The picture " + file.toStdString() + " cannot be written.");
  }
}

}  // namespace quillon::stage
