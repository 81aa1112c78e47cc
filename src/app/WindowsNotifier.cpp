// SPDX-License-Identifier: MIT
#include "app/WindowsNotifier.h"

#include <windows.h>
// Only after the above.
#include <dbt.h>

#include <QApplication>
#include <QMainWindow>
#include <cstddef>
#include <cstring>
#include <cwchar>
#include <exception>
#include <string>
#include <utility>

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

// The path is in wide characters for a Unicode window and in bytes for any other, and nothing in
// the structure says which. The text does: its first character is ASCII, so that a zero follows it
// only if it is wide.
std::string PathIn(const DEV_BROADCAST_DEVICEINTERFACE_A& narrow) {
  using Wide = DEV_BROADCAST_DEVICEINTERFACE_W;
  constexpr std::size_t kPathAt = offsetof(DEV_BROADCAST_DEVICEINTERFACE_A, dbcc_name);
  static_assert(kPathAt == offsetof(Wide, dbcc_name));
  if (narrow.dbcc_size <= kPathAt) return {};
  const std::size_t bytes = narrow.dbcc_size - kPathAt;
  if (bytes == 1 || narrow.dbcc_name[1] != 0)
    return {narrow.dbcc_name, strnlen(narrow.dbcc_name, bytes)};
  const wchar_t* const path = reinterpret_cast<const Wide&>(narrow).dbcc_name;
  const std::size_t length = wcsnlen(path, bytes / sizeof(wchar_t));
  return QString::fromWCharArray(path, static_cast<qsizetype>(length)).toStdString();
}

}  // namespace

WindowsNotifier::~WindowsNotifier() {
  if (registration_ != nullptr) UnregisterDeviceNotification(registration_);
}

bool WindowsNotifier::Start(Handler handler) {
  window_ = MainWindow();
  if (window_ == 0) return false;
  DEV_BROADCAST_DEVICEINTERFACE_A filter{};
  static_assert(sizeof filter == 32);
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
  // Of the other events not all have a structure, and nobody waits for them.
  if (event != DBT_DEVICEARRIVAL && event != DBT_DEVICEREMOVECOMPLETE) return false;
  // NOLINTNEXTLINE(performance-no-int-to-ptr): that is how a message carries it
  const auto* const header = reinterpret_cast<const DEV_BROADCAST_HDR*>(native->lParam);
  if (header->dbch_devicetype != DBT_DEVTYP_DEVICEINTERFACE) return false;
  const auto* const device = reinterpret_cast<const DEV_BROADCAST_DEVICEINTERFACE_A*>(header);
  handler_(event, device->dbcc_devicetype, PathIn(*device));
  return false;
} catch (const std::exception&) {
  return false;
}

}  // namespace quillon
