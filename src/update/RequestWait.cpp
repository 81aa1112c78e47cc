// SPDX-License-Identifier: MIT
#include "update/RequestWait.h"

#include <QCoreApplication>
#include <QEventLoop>
#include <QMouseEvent>

namespace quillon {
namespace {

// Drops what the user does, as long as it lives.
class InputPause : public QObject {
 public:
  InputPause() { QCoreApplication::instance()->installEventFilter(this); }

 protected:
  bool eventFilter(QObject* watched, QEvent* event) override;

 private:
  Qt::MouseButtons dropped_;  // went down and were dropped
};

bool InputPause::eventFilter(QObject* /*watched*/, QEvent* event) {
  switch (event->type()) {
    case QEvent::MouseButtonPress:
    case QEvent::MouseButtonDblClick:
      dropped_ |= static_cast<const QMouseEvent*>(event)->button();
      return true;
    // What was held down before comes up, or an arrow of a spin box would count on for ever.
    case QEvent::MouseButtonRelease:
      return dropped_.testFlag(static_cast<const QMouseEvent*>(event)->button());
    case QEvent::MouseMove:
    case QEvent::Wheel:
    case QEvent::ContextMenu:
    case QEvent::KeyPress:
    case QEvent::ShortcutOverride:
    case QEvent::Shortcut:
    case QEvent::InputMethod:
    case QEvent::TouchBegin:
    case QEvent::TouchUpdate:
    case QEvent::TabletPress:
    case QEvent::TabletMove:
    case QEvent::NativeGesture:
    case QEvent::DragEnter:
    case QEvent::DragMove:
    case QEvent::Drop:
      return true;
    default:
      return false;
  }
}

}  // namespace

bool RequestWait::Run(QEventLoop& loop) {
  const InputPause pause;
  loop_ = &loop;
  stopped_ = false;
  loop.exec();
  loop_ = nullptr;
  return !stopped_;
}

void RequestWait::Stop() {
  stopped_ = true;
  if (loop_ != nullptr) loop_->quit();
}

}  // namespace quillon
