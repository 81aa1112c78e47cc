// SPDX-License-Identifier: MIT
#pragma once

#include <cstddef>
#include <filesystem>
#include <string>

#include "kvusb/kvusb.h"

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
    return reinterpret_cast<Function>(FindAddress(name, StackBytes(Function{})));
  }

 private:
  // What a caller puts on the stack in 32 bits, where each argument of kvusb.h has four bytes.
  template <typename Result, typename... Arguments>
  static constexpr std::size_t StackBytes(Result(KVUSB_CALL*)(Arguments...)) {
    return 4 * sizeof...(Arguments);
  }

  // In 32 bits a library for Windows may have decorated the name with the bytes of the arguments.
  void (*FindAddress(const char* name, std::size_t stack_bytes) const)();

  void* handle_ = nullptr;
  std::string error_;
};

}  // namespace quillon
