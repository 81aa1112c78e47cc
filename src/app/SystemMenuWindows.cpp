// SPDX-License-Identifier: MIT
#include <windows.h>

#include "app/CMainDialog.h"

namespace quillon {
namespace {

constexpr UINT kAboutCommand = 16;
constexpr const wchar_t* kAboutText = L"&About Quillon...";

}  // namespace

void CMainDialog::AddAboutToSystemMenu() {
  HMENU menu = GetSystemMenu(reinterpret_cast<HWND>(winId()), FALSE);
  if (menu == nullptr) return;
  AppendMenuW(menu, MF_SEPARATOR, 0, nullptr);
  AppendMenuW(menu, MF_STRING, kAboutCommand, kAboutText);
}

bool CMainDialog::nativeEvent(const QByteArray& type, void* message, qintptr* result) {
  const auto* const native = static_cast<MSG*>(message);
  // The low four bits of a system command belong to the system.
  if (native->message == WM_SYSCOMMAND && (native->wParam & 0xFFF0) == kAboutCommand) {
    ShowAbout();
    *result = 0;
    return true;
  }
  return QMainWindow::nativeEvent(type, message, result);
}

}  // namespace quillon
