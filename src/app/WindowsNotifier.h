// SPDX-License-Identifier: MIT
#pragma once

#include <QtGui/qwindowdefs.h>

#include <QAbstractNativeEventFilter>

#include "devlink/DeviceNotifier.h"

namespace quillon {

// Hot-plug events of the system, from the messages that Windows sends to the main window about USB
// devices. They come on the window's thread whenever a message loop runs, even a message box's, so
// the handler must only take note of them.
//
// Only listens: every message goes on to Qt and to Windows' default handling, which refuses
// nothing.
class WindowsNotifier : public DeviceNotifier, private QAbstractNativeEventFilter {
 public:
  WindowsNotifier() = default;
  WindowsNotifier(const WindowsNotifier&) = delete;
  WindowsNotifier& operator=(const WindowsNotifier&) = delete;
  ~WindowsNotifier() override;

  // Registers the main window, which must exist by then.
  bool Start(Handler handler) override;

 private:
  bool nativeEventFilter(const QByteArray& type, void* message, qintptr* result) override;

  Handler handler_;
  WId window_ = 0;
  void* registration_ = nullptr;
};

}  // namespace quillon
