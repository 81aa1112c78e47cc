// SPDX-License-Identifier: MIT
#include "stage/Attendant.h"

#include <QCoreApplication>
#include <QEvent>
#include <QMenu>
#include <QTimer>
#include <utility>

namespace quillon::stage {
namespace {

constexpr int kUntilPainted = 50;  // milliseconds

}  // namespace

Attendant::Attendant(Act act) : act_(std::move(act)) {
  QCoreApplication::instance()->installEventFilter(this);
}

Attendant::~Attendant() { QCoreApplication::instance()->removeEventFilter(this); }

void Attendant::Rethrow() {
  if (thrown_) std::rethrow_exception(std::exchange(thrown_, nullptr));
}

bool Attendant::eventFilter(QObject* watched, QEvent* event) {
  if (event->type() != QEvent::Show || !watched->isWidgetType()) return false;
  auto* const opened = static_cast<QWidget*>(watched);
  const bool waits =
      opened->isWindow() && (opened->isModal() || qobject_cast<QMenu*>(opened) != nullptr);
  if (waits) QTimer::singleShot(kUntilPainted, opened, [this, opened] { Attend(*opened); });
  return false;
}

void Attendant::Attend(QWidget& opened) {
  try {
    act_(opened);
  } catch (...) {
    thrown_ = std::current_exception();
    opened.close();
  }
}

}  // namespace quillon::stage
