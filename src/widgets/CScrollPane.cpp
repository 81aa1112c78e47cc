// SPDX-License-Identifier: MIT
#include "widgets/CScrollPane.h"

#include <QAbstractItemView>
#include <QApplication>
#include <QKeyEvent>
#include <QScrollBar>
#include <algorithm>

namespace quillon {

CScrollPane::CScrollPane(QWidget* content, QWidget* parent) : QScrollArea(parent) {
  setFrameShape(QFrame::NoFrame);
  setWidgetResizable(true);
  setFocusPolicy(Qt::NoFocus);
  setWidget(content);
  // After setWidget(), which gives it one.
  content->setAutoFillBackground(false);
  viewport()->setAutoFillBackground(false);
  connect(qApp, &QApplication::focusChanged, this,
          [this](const QWidget* /*old*/, const QWidget* now) { FollowFocus(now); });
}

// While the base class goes, its children give the focus up, and there is no pane any more.
CScrollPane::~CScrollPane() { disconnect(qApp, nullptr, this, nullptr); }

void CScrollPane::SetMostLines(int lines) {
  most_lines_ = lines;
  setSizePolicy(QSizePolicy::Preferred, QSizePolicy::Preferred);
  updateGeometry();
}

int CScrollPane::heightForWidth(int width) const {
  return std::min(widget()->heightForWidth(width), most_lines_ * fontMetrics().lineSpacing());
}

QSize CScrollPane::minimumSizeHint() const {
  return most_lines_ > 0 ? QSize(0, fontMetrics().lineSpacing()) : QScrollArea::minimumSizeHint();
}

void CScrollPane::BringIntoView(const QWidget& inner, const QRect& part) {
  for (QWidget* outer = inner.parentWidget(); outer != nullptr; outer = outer->parentWidget()) {
    auto* const pane = qobject_cast<CScrollPane*>(outer);
    if (pane == nullptr) continue;
    const QPoint middle = inner.mapTo(pane->widget(), part.center());
    pane->ensureVisible(middle.x(), middle.y(), part.width() / 2 + 1, part.height() / 2 + 1);
    return;
  }
}

void CScrollPane::FollowFocus(const QWidget* now) {
  // If a click scrolled, the button would be released beside the control that was pressed.
  const bool clicked = QGuiApplication::mouseButtons() != Qt::NoButton;
  if (clicked || now == widget() || !widget()->isAncestorOf(now)) return;
  BringIntoView(*now, now->rect());
  const auto* const view = qobject_cast<const QAbstractItemView*>(now);
  if (view != nullptr) BringIntoView(*view->viewport(), view->visualRect(view->currentIndex()));
}

bool CScrollPane::eventFilter(QObject* watched, QEvent* event) {
  if (watched != widget()) return QScrollArea::eventFilter(watched, event);
  const bool shown = event->type() == QEvent::ShowToParent;
  if (shown || event->type() == QEvent::HideToParent) setVisible(shown);
  // A text that can be selected would take the keys that scroll, to move an invisible cursor.
  if (event->type() == QEvent::KeyPress && most_lines_ > 0) {
    auto* const key = static_cast<QKeyEvent*>(event);
    const bool scrolls = key->key() == Qt::Key_Up || key->key() == Qt::Key_Down;
    if (scrolls && key->modifiers() == Qt::NoModifier) {
      return QCoreApplication::sendEvent(verticalScrollBar(), event);
    }
  }
  return QScrollArea::eventFilter(watched, event);
}

}  // namespace quillon
