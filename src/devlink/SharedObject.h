// SPDX-License-Identifier: MIT
#pragma once

#include <filesystem>
#include <string>

namespace quillon {

// A shared library of the operating system, loaded for as long as the object lives.
class SharedObject {
 public:
  explicit SharedObject(const std::filesystem::path& file);
  ~SharedObject();
  SharedObject(const SharedObject&) = delete;
  SharedObject& operator=(const SharedObject&) = delete;

  // Why loading failed, in the system's words; empty on success.
  const std::string& Error() const { return error_; }

  // The function of this name, null where the library has none.
  template <typename Function>
  Function Find(const char* name) const {
    return reinterpret_cast<Function>(FindAddress(name));
  }

 private:
  void (*FindAddress(const char* name) const)();

  void* handle_ = nullptr;
  std::string error_;
};

}  // namespace quillon
