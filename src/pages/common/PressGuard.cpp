// SPDX-License-Identifier: MIT
#include "pages/common/PressGuard.h"

#include <QKeyEvent>
#include <QPushButton>

namespace quillon {
namespace {

class PressGuard : public QObject {
 public:
  using QObject::QObject;

 protected:
  bool eventFilter(QObject* /*watched*/, QEvent* event) override {
    return event->type() == QEvent::MouseButtonDblClick ||
           (event->type() == QEvent::KeyPress &&
            static_cast<const QKeyEvent*>(event)->isAutoRepeat());
  }
};

}  // namespace

void GuardFromRepeats(QPushButton* button) { button->installEventFilter(new PressGuard(button)); }

}  // namespace quillon
