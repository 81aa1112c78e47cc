// SPDX-License-Identifier: MIT
#include "pages/common/WheelGuard.h"

#include <QEvent>
#include <QWidget>

namespace quillon {
namespace {

class WheelGuard : public QObject {
 public:
  explicit WheelGuard(QWidget* control) : QObject(control), control_(control) {}

 protected:
  bool eventFilter(QObject* /*watched*/, QEvent* event) override {
    if (event->type() != QEvent::Wheel || control_->hasFocus()) return false;
    event->ignore();  // what lies around the control may scroll
    return true;
  }

 private:
  QWidget* control_;
};

}  // namespace

void GuardFromWheel(QWidget* control) {
  control->setFocusPolicy(Qt::StrongFocus);
  control->installEventFilter(new WheelGuard(control));
}

}  // namespace quillon
