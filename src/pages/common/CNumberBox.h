// SPDX-License-Identifier: MIT
#pragma once

#include <QSpinBox>

namespace quillon {

// A number from 0 to a limit. More can be typed and becomes the limit when the field is left, an
// empty text 0. What a board holds may be above the limit: it is shown and kept, and can be typed
// again, but nothing else above the limit can be chosen.
class CNumberBox : public QSpinBox {
  Q_OBJECT

 public:
  explicit CNumberBox(int limit, QWidget* parent = nullptr);

  // Shows a value that a board holds.
  void ShowHeld(int value);
  // The value, after what is being typed has been taken as if the field were left.
  int Take();
  // Takes it too; false when it was not a number that may be chosen and another one stands there.
  bool FinishEdit();

  void stepBy(int steps) override;

 signals:
  // The field was left with a text that is no number that may be chosen; another one stands there.
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
