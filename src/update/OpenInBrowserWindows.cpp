// SPDX-License-Identifier: MIT
#include <windows.h>
// After it, because it needs its types.
#include <shellapi.h>

#include <QDir>
#include <QFileInfo>
#include <QUrl>
#include <array>
#include <optional>
#include <string>

#include "update/BrowserCommand.h"
#include "update/OpenInBrowser.h"

namespace quillon {
namespace {

// The longest text that is taken from the registry, with its final zero.
constexpr DWORD kMostRegistryText = 260;

// ShellExecute gives an integer in a handle's clothes; up to here it is an error.
constexpr INT_PTR kLastShellError = 32;

bool Worked(HINSTANCE result) { return reinterpret_cast<INT_PTR>(result) > kLastShellError; }

// The default value of a key below the classes root.
std::optional<std::string> DefaultValue(const std::string& key) {
  std::array<char, kMostRegistryText> text{};
  DWORD size = kMostRegistryText;
  if (RegGetValueA(HKEY_CLASSES_ROOT, key.c_str(), nullptr, RRF_RT_REG_SZ, nullptr, text.data(),
                   &size) != ERROR_SUCCESS) {
    return std::nullopt;
  }
  return std::string(text.data());
}

bool Start(std::string command) {
  STARTUPINFOA startup{};
  startup.cb = sizeof startup;
  startup.dwFlags = STARTF_USESHOWWINDOW;
  startup.wShowWindow = SW_SHOWNORMAL;
  PROCESS_INFORMATION process{};
  if (CreateProcessA(nullptr, command.data(), nullptr, nullptr, FALSE, 0, nullptr, nullptr,
                     &startup, &process) == 0) {
    return false;
  }
  CloseHandle(process.hThread);
  CloseHandle(process.hProcess);
  return true;
}

// With the program that opens web pages from the disk.
bool OpenWithPageProgram(const std::string& address) {
  const auto kind = DefaultValue(".htm");
  if (!kind) return false;
  const auto line = DefaultValue(*kind + "\\shell\\open\\command");
  return line && Start(BrowserCommand(*line, address));
}

}  // namespace

bool OpenInBrowser(const QString& address) {
  if (!IsWebAddress(address)) return false;
  // Without blanks, quotes and letters beyond ASCII: it may become part of a command line.
  const std::string encoded = QUrl(address).toEncoded(QUrl::FullyEncoded).toStdString();
  return Worked(ShellExecuteA(nullptr, "open", encoded.c_str(), nullptr, nullptr, SW_SHOWNORMAL)) ||
         OpenWithPageProgram(encoded);
}

bool OpenDocument(const QString& path) {
  const QFileInfo file(path);
  if (!file.exists()) return false;
  const std::wstring name = QDir::toNativeSeparators(file.absoluteFilePath()).toStdWString();
  return Worked(ShellExecuteW(nullptr, L"open", name.c_str(), nullptr, nullptr, SW_SHOWNORMAL));
}

}  // namespace quillon
