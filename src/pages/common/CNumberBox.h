// SPDX-License-Identifier: MIT
#pragma once

#include <QSpinBox>

namespace quillon {

// A number from 0 to a limit. A larger number can be typed and becomes the limit when the field is
// left; an empty text becomes 0. A value that a board holds may be above the limit. It is shown and
// kept, and it can be typed again, but no other number above the limit can be chosen.
class CNumberBox : public QSpinBox {
  Q_OBJECT

 public:
  explicit CNumberBox(int limit, QWidget* parent = nullptr);

  // Shows a value that a board holds.
  void ShowHeld(int value);
  // The value. What is being typed is taken first, as when the field is left.
  int Take();
  // Takes what is being typed too. False when that was no allowed number, so that another one
  // stands there now.
  bool FinishEdit();

  void stepBy(int steps) override;

 signals:
  // The field was left with a text that is no allowed number; another number stands there now.
  void EntryCorrected();

 protected:
  void focusOutEvent(QFocusEvent* event) override;
  QValidator::State validate(QString& text, int& position) const override;
  void fixup(QString& text) const override;
  StepEnabled stepEnabled() const override;

 private:
  int limit_;
};

}  // namespace quillon
