// SPDX-License-Identifier: MIT
#pragma once

#include <cstdint>
#include <exception>
#include <functional>
#include <string>

namespace quillon {

// Called when a function of a HID library throws, which kvusb.h forbids.
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
