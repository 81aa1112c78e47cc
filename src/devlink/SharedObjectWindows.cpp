// SPDX-License-Identifier: MIT
#include <windows.h>

#include <system_error>

#include "devlink/SharedObject.h"

namespace quillon {

SharedObject::SharedObject(const std::filesystem::path& file)
    : handle_(LoadLibraryW(file.c_str())) {
  if (handle_ != nullptr) return;
  const DWORD error = GetLastError();
  // The system's own sentence has a place for the name, which nobody fills in.
  error_ = error == ERROR_BAD_EXE_FORMAT ? "it is no library, or none for programs of 64 bits"
                                         : std::system_category().message(static_cast<int>(error));
}

SharedObject::~SharedObject() {
  if (handle_ != nullptr) FreeLibrary(static_cast<HMODULE>(handle_));
}

void (*SharedObject::FindAddress(const char* name) const)() {
  return reinterpret_cast<void (*)()>(GetProcAddress(static_cast<HMODULE>(handle_), name));
}

}  // namespace quillon
