// SPDX-License-Identifier: MIT
#include "widgets/CChoiceList.h"

#include <QHBoxLayout>
#include <QKeyEvent>
#include <QListView>
#include <QScreen>
#include <QScrollBar>
#include <QStyledItemDelegate>
#include <algorithm>

namespace quillon {
namespace {

constexpr int kMostRows = 12;

// Entries as high as the grid's rows, and their text under the cell's.
class RoomyItems : public QStyledItemDelegate {
 public:
  using QStyledItemDelegate::QStyledItemDelegate;
  QSize sizeHint(const QStyleOptionViewItem& option, const QModelIndex& index) const override {
    const QSize bare = QStyledItemDelegate::sizeHint(option, index);
    return {bare.width() + 2 * kIndent, std::max(bare.height(), option.fontMetrics.height() + 6)};
  }
  void paint(QPainter* painter, const QStyleOptionViewItem& option,
             const QModelIndex& index) const override {
    QStyleOptionViewItem item = option;
    initStyleOption(&item, index);
    const QString text = std::exchange(item.text, QString());
    const QStyle* style = item.widget->style();
    style->drawControl(QStyle::CE_ItemViewItem, &item, painter, item.widget);
    const bool current = item.state & QStyle::State_Selected;
    style->drawItemText(painter, item.rect.adjusted(kIndent, 0, 0, 0),
                        Qt::AlignLeft | Qt::AlignVCenter, item.palette, true, text,
                        current ? QPalette::HighlightedText : QPalette::Text);
  }

 private:
  static constexpr int kIndent = 5;
};

}  // namespace

CChoiceList::CChoiceList(QWidget* parent) : QFrame(parent, Qt::Popup), list_(new QListView(this)) {
  setFrameStyle(QFrame::Box | QFrame::Plain);
  list_->setModel(&choices_);
  list_->setItemDelegate(new RoomyItems(list_));
  list_->setFrameShape(QFrame::NoFrame);
  list_->setEditTriggers(QAbstractItemView::NoEditTriggers);
  list_->setHorizontalScrollBarPolicy(Qt::ScrollBarAlwaysOff);
  list_->setUniformItemSizes(true);
  list_->setMouseTracking(true);
  list_->installEventFilter(this);
  auto* layout = new QHBoxLayout(this);
  layout->setContentsMargins({});
  layout->addWidget(list_);
  setFocusProxy(list_);
  connect(list_, &QListView::clicked, this, &CChoiceList::Choose);
  connect(list_, &QListView::entered, list_, &QListView::setCurrentIndex);
}

void CChoiceList::Open(const QStringList& choices, const QString& current, const QRect& cell) {
  list_->setAccessibleName(accessibleName());
  choices_.setStringList(choices);
  cell_ = cell;
  const auto row = choices.indexOf(current);
  list_->setCurrentIndex(row < 0 ? QModelIndex() : choices_.index(static_cast<int>(row)));
  // A styled frame is a shade darker than the window: on a dark ground the list would have no edge.
  QPalette framed = parentWidget()->palette();
  framed.setColor(QPalette::WindowText, framed.color(QPalette::PlaceholderText));
  setPalette(framed);
  Place();
  show();
  list_->setFocus(Qt::PopupFocusReason);
  list_->scrollTo(list_->currentIndex());
}

void CChoiceList::Search(const QString& text) { list_->keyboardSearch(text); }

void CChoiceList::Place() {
  const int rows = std::min(choices_.rowCount(), kMostRows);
  const int height = rows * list_->sizeHintForRow(0) + 2 * frameWidth();
  const bool scrolls = rows < choices_.rowCount();
  const int bar = scrolls ? list_->verticalScrollBar()->sizeHint().width() : 0;
  const int width = std::max(cell_.width(), list_->sizeHintForColumn(0) + bar + 2 * frameWidth());
  QRect place(cell_.left(), cell_.bottom() + 1, width, height);
  const QRect room = parentWidget()->screen()->availableGeometry();
  if (place.bottom() > room.bottom()) place.moveBottom(cell_.top() - 1);
  if (place.right() > room.right()) place.moveRight(room.right());
  place.moveTop(std::max(place.top(), room.top()));
  place.moveLeft(std::max(place.left(), room.left()));
  setGeometry(place);
}

void CChoiceList::Choose() {
  const QModelIndex index = list_->currentIndex();
  hide();
  if (index.isValid()) emit Chosen(index.data().toString());
}

bool CChoiceList::eventFilter(QObject* watched, QEvent* event) {
  if (watched != list_ || event->type() != QEvent::KeyPress) return false;
  switch (static_cast<QKeyEvent*>(event)->key()) {
    case Qt::Key_Return:
    case Qt::Key_Enter:
      Choose();
      return true;
    case Qt::Key_Escape:
    case Qt::Key_Tab:
    case Qt::Key_Backtab:
    case Qt::Key_F2:
      hide();
      return true;
    default:
      return false;
  }
}

void CChoiceList::mousePressEvent(QMouseEvent* event) {
  // A press on the cell itself closes the list; passed on, it would open it again.
  setAttribute(Qt::WA_NoMouseReplay, cell_.contains(event->globalPosition().toPoint()));
  QFrame::mousePressEvent(event);
}

}  // namespace quillon
