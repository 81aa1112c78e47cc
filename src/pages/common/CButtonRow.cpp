// SPDX-License-Identifier: MIT
#include "pages/common/CButtonRow.h"

#include <QBoxLayout>
#include <QEvent>
#include <QLabel>
#include <QPushButton>

#include "widgets/CStatusLed.h"

namespace quillon {
namespace {

constexpr int kGap = 12;

}  // namespace

CButtonRow::CButtonRow(QWidget* parent)
    : QWidget(parent), row_(new QHBoxLayout(this)), lamps_(new QHBoxLayout) {
  row_->setContentsMargins(0, 0, 0, 0);
  row_->addStretch(1);
  row_->addLayout(lamps_);
}

void CButtonRow::AddButton(QPushButton* button, QLabel* caption) {
  captions_.push_back(caption);
  // In front of the stretch and the lamps.
  row_->insertWidget(row_->count() - 2, button);
  row_->insertWidget(row_->count() - 2, caption);
  row_->insertSpacing(row_->count() - 2, kGap);
}

void CButtonRow::AddLamp(CStatusLed* lamp, QLabel* name) {
  auto* const pair = new QHBoxLayout;
  pair->addWidget(lamp);
  pair->addWidget(name, 1);
  lamps_->addLayout(pair);
}

QSize CButtonRow::minimumSizeHint() const {
  return {least_[kBare], QWidget::minimumSizeHint().height()};
}

void CButtonRow::Take(Form form) {
  form_ = form;
  for (QLabel* const caption : captions_) {
    caption->setWordWrap(form != kWide);
    caption->setVisible(form != kBare);
  }
  lamps_->setDirection(form == kNarrow ? QBoxLayout::TopToBottom : QBoxLayout::LeftToRight);
  for (int i = 0; i < row_->count(); ++i) {
    QSpacerItem* const gap = row_->itemAt(i)->spacerItem();
    const bool is_gap = gap != nullptr && i < row_->count() - 2;
    if (is_gap) gap->changeSize(form == kNarrow ? 0 : kGap, 0, QSizePolicy::Fixed);
  }
  row_->invalidate();
}

void CButtonRow::Measure() {
  for (const Form form : {kBare, kNarrow, kWrapped, kWide}) {
    Take(form);
    least_[form] = row_->totalMinimumSize().width();
  }
  updateGeometry();
  Fit();
}

void CButtonRow::Fit() {
  int form = kWide;
  while (form < kBare && width() < least_[static_cast<std::size_t>(form)]) ++form;
  if (form == form_) return;
  Take(static_cast<Form>(form));
  row_->activate();
}

void CButtonRow::resizeEvent(QResizeEvent* event) {
  QWidget::resizeEvent(event);
  Fit();
}

void CButtonRow::changeEvent(QEvent* event) {
  QWidget::changeEvent(event);
  if (event->type() == QEvent::FontChange || event->type() == QEvent::StyleChange) Measure();
}

void CButtonRow::showEvent(QShowEvent* event) {
  if (least_[kWide] == 0) Measure();
  QWidget::showEvent(event);
}

}  // namespace quillon
