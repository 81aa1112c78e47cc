// SPDX-License-Identifier: MIT
#include <dlfcn.h>

#include "devlink/SharedObject.h"

namespace quillon {

SharedObject::SharedObject(const std::filesystem::path& file)
    : handle_(dlopen(file.c_str(), RTLD_NOW | RTLD_LOCAL)) {
  if (handle_ != nullptr) return;
  const char* reason = dlerror();
  error_ = reason != nullptr ? reason : "unknown reason";
}

SharedObject::~SharedObject() {
  if (handle_ != nullptr) dlclose(handle_);
}

void (*SharedObject::FindAddress(const char* name, std::size_t /*stack_bytes*/) const)() {
  return reinterpret_cast<void (*)()>(dlsym(handle_, name));
}

}  // namespace quillon
