// SPDX-License-Identifier: MIT
#include "pages/common/CFlashProgress.h"

#include <QEvent>
#include <QHBoxLayout>
#include <QLabel>
#include <QPainter>
#include <QProgressBar>
#include <algorithm>

#include "widgets/Tone.h"

namespace quillon {
namespace {

constexpr QRgb kBar = qRgb(60, 60, 125);
constexpr QRgb kGround = qRgb(210, 210, 210);

}  // namespace

// A line of text that changes often: unlike a label, it never lays its page out anew, which costs
// more than all other drawing of a run.
class CPlainLine : public QWidget {
 public:
  explicit CPlainLine(const QString& widest) {
    setFixedWidth(fontMetrics().horizontalAdvance(widest));
  }

  void SetText(const QString& text) {
    if (text == text_) return;
    text_ = text;
    setAccessibleName(text);
    update();
  }

 protected:
  void paintEvent(QPaintEvent* /*event*/) override {
    QPainter(this).drawText(rect(), Qt::AlignLeft | Qt::AlignVCenter, text_);
  }

 private:
  QString text_;
};

// A text that is cut where there is no room for it.
class CCutLabel : public QLabel {
 public:
  QSize minimumSizeHint() const override { return {0, QLabel::minimumSizeHint().height()}; }

 protected:
  void paintEvent(QPaintEvent* /*event*/) override {
    QPainter(this).drawText(rect(), Qt::AlignLeft | Qt::AlignVCenter | Qt::TextSingleLine,
                            fontMetrics().elidedText(text(), Qt::ElideRight, width()));
  }
};

CFlashProgress::CFlashProgress(QWidget* parent)
    : QWidget(parent),
      line_(new QHBoxLayout(this)),
      bar_(new QProgressBar),
      loaded_(new CCutLabel),
      times_(new CPlainLine(QStringLiteral("00:00, about 00:00 left  "))) {
  line_->setContentsMargins(0, 0, 0, 0);
  line_->addWidget(bar_, 1);
  line_->addWidget(loaded_);
  line_->addSpacing(fontMetrics().averageCharWidth());
  line_->addWidget(times_);
  bar_->setAccessibleName(tr("Progress of the flash update"));
  // What a line is for is its description, as its text is its name for screen readers.
  loaded_->setAccessibleDescription(tr("What is loaded"));
  times_->setAccessibleDescription(tr("Time of the flash update"));
  clock_.start();
  Tint();
  Reset();
}

void CFlashProgress::ShowLoaded(const QString& text) {
  loaded_->setText(text);
  Fold();
}

QSize CFlashProgress::minimumSizeHint() const {
  return {times_->minimumWidth(), QWidget::minimumSizeHint().height()};
}

void CFlashProgress::resizeEvent(QResizeEvent* event) {
  QWidget::resizeEvent(event);
  Fold();
}

// Stands in one line only where all of it can be read.
void CFlashProgress::Fold() {
  const int one_line = 2 * times_->minimumWidth() + loaded_->sizeHint().width();
  line_->setDirection(width() < one_line ? QBoxLayout::TopToBottom : QBoxLayout::LeftToRight);
}

void CFlashProgress::Begin(int records) {
  pace_.Begin(records, Now());
  // A bar of the range 0 to 0 would run to and fro without end.
  bar_->setRange(0, std::max(records, 1));
  bar_->setTextVisible(true);
  bar_->setValue(0);
}

void CFlashProgress::Advance(int position) {
  const auto now = Now();
  if (!pace_.IsDue(position, now)) return;
  bar_->setValue(position);
  times_->SetText(QString::fromStdString(pace_.Describe(position, now)));
}

void CFlashProgress::Reset() {
  bar_->setTextVisible(false);
  bar_->setValue(0);
  times_->SetText({});
}

void CFlashProgress::changeEvent(QEvent* event) {
  if (event->type() == QEvent::ApplicationPaletteChange) Tint();
  QWidget::changeEvent(event);
}

void CFlashProgress::Tint() {
  QPalette tinted;
  tinted.setColor(QPalette::Base, ToneFor(kGround, tinted));
  tinted.setColor(QPalette::Highlight, ToneFor(kBar, tinted));
  bar_->setPalette(tinted);
}

}  // namespace quillon
