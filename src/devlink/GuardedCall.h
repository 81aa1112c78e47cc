// SPDX-License-Identifier: MIT
#pragma once

#include <cstdint>
#include <exception>
#include <functional>
#include <string>

namespace quillon {

// Told of an exception that a HID library let out of a function, against its promise in kvusb.h.
using ThrowHandler = std::function<void(const char* function, const std::string& text)>;

// The result of a call into a library, or `failure` where it throws.
template <typename Call>
std::int32_t GuardedCall(const char* function, std::int32_t failure, const ThrowHandler& thrown,
                         Call call) {
  try {
    return call();
  } catch (const std::exception& error) {
    thrown(function, error.what());
  } catch (...) {
    thrown(function, "unknown exception");
  }
  return failure;
}

}  // namespace quillon
