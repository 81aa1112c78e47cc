// SPDX-License-Identifier: MIT
#include <windows.h>

#include <string>

#include "conformance/Process.h"

namespace quillon::conformance {

std::ptrdiff_t OpenDescriptors() {
  DWORD count = 0;
  if (GetProcessHandleCount(GetCurrentProcess(), &count) == 0) return -1;
  // A process always has some; Wine does not count.
  return count != 0 ? std::ptrdiff_t{count} : -1;
}

std::filesystem::path ProgramFile(const char* name) {
  std::wstring file(MAX_PATH, L'\0');
  DWORD length = GetModuleFileNameW(nullptr, file.data(), static_cast<DWORD>(file.size()));
  // A longer name is cut, and its length is not told.
  while (length == file.size()) {
    file.resize(file.size() * 2);
    length = GetModuleFileNameW(nullptr, file.data(), static_cast<DWORD>(file.size()));
  }
  if (length == 0) return name;
  file.resize(length);
  return file;
}

}  // namespace quillon::conformance
