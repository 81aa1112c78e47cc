// SPDX-License-Identifier: MIT
#include "app/WindowsNotifier.h"

#include <windows.h>
// Only after the above.
#include <dbt.h>

#include <QApplication>
#include <QMainWindow>
#include <exception>
#include <span>
#include <utility>

#include "devlink/DeviceBroadcast.h"

namespace quillon {
namespace {

// The class of USB devices as such. A board's HID interface would be another.
constexpr GUID kUsbDevices{
    0xA5DCBF10, 0x6530, 0x11D2, {0x90, 0x1F, 0x00, 0xC0, 0x4F, 0xB9, 0x51, 0xED}};

WId MainWindow() {
  for (const QWidget* const widget : QApplication::topLevelWidgets()) {
    if (qobject_cast<const QMainWindow*>(widget) != nullptr) return widget->winId();
  }
  return 0;
}

std::span<const std::uint8_t> Structure(LPARAM parameter) {
  // NOLINTNEXTLINE(performance-no-int-to-ptr): that is how a message carries it
  const auto* const header = reinterpret_cast<const DEV_BROADCAST_HDR*>(parameter);
  return {reinterpret_cast<const std::uint8_t*>(header), header->dbch_size};
}

}  // namespace

WindowsNotifier::~WindowsNotifier() {
  if (registration_ != nullptr) UnregisterDeviceNotification(registration_);
}

bool WindowsNotifier::Start(Handler handler) {
  window_ = MainWindow();
  if (window_ == 0) return false;
  DEV_BROADCAST_DEVICEINTERFACE_A filter{};
  filter.dbcc_size = sizeof filter;
  filter.dbcc_devicetype = DBT_DEVTYP_DEVICEINTERFACE;
  filter.dbcc_classguid = kUsbDevices;
  // NOLINTNEXTLINE(performance-no-int-to-ptr): that is how Qt hands out a window of Windows
  auto* const window = reinterpret_cast<HWND>(window_);
  registration_ = RegisterDeviceNotificationA(window, &filter, DEVICE_NOTIFY_WINDOW_HANDLE);
  if (registration_ == nullptr) return false;
  handler_ = std::move(handler);
  QCoreApplication::instance()->installNativeEventFilter(this);
  return true;
}

// Called from the system's message loop, into which nothing may be thrown.
bool WindowsNotifier::nativeEventFilter(const QByteArray& type, void* message, qintptr*) try {
  // A message that was posted is seen by the event loop first, under another name.
  if (type != "windows_generic_MSG") return false;
  const auto* const native = static_cast<const MSG*>(message);
  if (native->message != WM_DEVICECHANGE || native->lParam == 0) return false;
  if (reinterpret_cast<WId>(native->hwnd) != window_) return false;
  const auto event = static_cast<std::uint32_t>(native->wParam);
  if (!HasBroadcast(event)) return false;
  if (const auto broadcast = ReadDeviceBroadcast(event, Structure(native->lParam))) {
    handler_(broadcast->event, broadcast->device_type, broadcast->path);
  }
  return false;
} catch (const std::exception&) {
  return false;
}

}  // namespace quillon
