// SPDX-License-Identifier: MIT
#pragma once

#include <QtGui/qwindowdefs.h>

#include <QAbstractNativeEventFilter>

#include "devlink/DeviceNotifier.h"

namespace quillon {

// Hot-plug events of the system, from the messages that Windows sends to the main window about USB
// devices. They come on its thread, whenever a message loop runs, be it a message box's: the
// handler must only note them.
//
// Only listens: every message goes on to Qt and to Windows' own answer, which refuses nothing.
class WindowsNotifier : public DeviceNotifier, private QAbstractNativeEventFilter {
 public:
  WindowsNotifier() = default;
  WindowsNotifier(const WindowsNotifier&) = delete;
  WindowsNotifier& operator=(const WindowsNotifier&) = delete;
  ~WindowsNotifier() override;

  // Registers the main window, so there has to be one by now.
  bool Start(Handler handler) override;

 private:
  bool nativeEventFilter(const QByteArray& type, void* message, qintptr* result) override;

  Handler handler_;
  WId window_ = 0;
  void* registration_ = nullptr;
};

}  // namespace quillon
