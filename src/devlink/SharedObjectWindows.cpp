// SPDX-License-Identifier: MIT
#include <windows.h>

#include <system_error>

#include "devlink/SharedObject.h"

namespace quillon {

// Whatever else the library needs may stand beside it.
SharedObject::SharedObject(const std::filesystem::path& file)
    : handle_(LoadLibraryExW(file.c_str(), nullptr, LOAD_WITH_ALTERED_SEARCH_PATH)) {
  if (handle_ != nullptr) return;
  const DWORD error = GetLastError();
  // The system's own sentence has a place for the name, which nobody fills in.
  error_ = error == ERROR_BAD_EXE_FORMAT ? "it is no library, or none for programs of 64 bits"
                                         : std::system_category().message(static_cast<int>(error));
}

SharedObject::~SharedObject() {
  if (handle_ != nullptr) FreeLibrary(static_cast<HMODULE>(handle_));
}

void (*SharedObject::FindAddress(const char* name, std::size_t stack_bytes) const)() {
  const std::string plain = name;
  const std::string decorated = plain + "@" + std::to_string(stack_bytes);
  for (const std::string& tried : {plain, decorated, "_" + decorated}) {
    auto* const found = GetProcAddress(static_cast<HMODULE>(handle_), tried.c_str());
    if (found != nullptr) return reinterpret_cast<void (*)()>(found);
  }
  return nullptr;
}

}  // namespace quillon
