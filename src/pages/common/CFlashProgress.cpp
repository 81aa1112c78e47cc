// SPDX-License-Identifier: MIT
#include "pages/common/CFlashProgress.h"

#include <QEvent>
#include <QHBoxLayout>
#include <QLabel>
#include <QProgressBar>
#include <algorithm>

#include "widgets/Tone.h"

namespace quillon {
namespace {

constexpr QRgb kBar = qRgb(60, 60, 125);
constexpr QRgb kGround = qRgb(210, 210, 210);

}  // namespace

CFlashProgress::CFlashProgress(QWidget* parent)
    : QWidget(parent), bar_(new QProgressBar), loaded_(new QLabel), times_(new QLabel) {
  auto* const layout = new QHBoxLayout(this);
  layout->setContentsMargins(0, 0, 0, 0);
  layout->addWidget(bar_, 1);
  layout->addWidget(loaded_);
  layout->addSpacing(fontMetrics().averageCharWidth());
  layout->addWidget(times_);
  bar_->setAccessibleName(tr("Progress of the flash update"));
  loaded_->setAccessibleName(tr("What is loaded"));
  times_->setAccessibleName(tr("Time of the flash update"));
  // A width of its own, so that a changing time does not lay the page out anew.
  times_->setFixedWidth(
      fontMetrics().horizontalAdvance(QStringLiteral("00:00, about 00:00 left  ")));
  clock_.start();
  Tint();
  Reset();
}

void CFlashProgress::ShowLoaded(const QString& text) { loaded_->setText(text); }

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
  times_->setText(QString::fromStdString(pace_.Describe(position, now)));
}

void CFlashProgress::Reset() {
  bar_->setTextVisible(false);
  bar_->setValue(0);
  times_->clear();
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
