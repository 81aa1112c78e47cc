// SPDX-License-Identifier: MIT
#include "pages/common/CNumberBox.h"

#include <algorithm>

#include "pages/common/WheelGuard.h"

namespace quillon {

CNumberBox::CNumberBox(int limit, QWidget* parent) : QSpinBox(parent), limit_(limit) {
  setRange(0, limit);
  setAlignment(Qt::AlignRight | Qt::AlignVCenter);
  GuardFromWheel(this);
}

void CNumberBox::ShowHeld(int value) {
  setMaximum(std::max(limit_, value));
  setValue(value);
}

int CNumberBox::Take() {
  interpretText();
  return value();
}

bool CNumberBox::FinishEdit() {
  const bool kept = hasAcceptableInput();
  interpretText();
  return kept;
}

void CNumberBox::focusOutEvent(QFocusEvent* event) {
  const bool kept = hasAcceptableInput();
  QSpinBox::focusOutEvent(event);
  if (!kept) Q_EMIT EntryCorrected();
}

void CNumberBox::stepBy(int steps) {
  const int from = Take();
  const int to = std::min(from + steps, limit_);
  QSpinBox::stepBy((steps > 0 ? std::max(from, to) : to) - from);
}

QValidator::State CNumberBox::validate(QString& text, int& /*position*/) const {
  if (!std::all_of(text.cbegin(), text.cend(), [](QChar c) { return c.isDigit(); })) {
    return QValidator::Invalid;
  }
  bool is_number = false;
  const int typed = locale().toInt(text, &is_number);
  const bool allowed = is_number && (typed <= limit_ || typed == maximum());
  return allowed ? QValidator::Acceptable : QValidator::Intermediate;
}

void CNumberBox::fixup(QString& text) const { text = textFromValue(text.isEmpty() ? 0 : limit_); }

QAbstractSpinBox::StepEnabled CNumberBox::stepEnabled() const {
  StepEnabled enabled = StepNone;
  if (value() < limit_) enabled |= StepUpEnabled;
  if (value() > minimum()) enabled |= StepDownEnabled;
  return enabled;
}

}  // namespace quillon
