// SPDX-License-Identifier: MIT
#include "conformance/Process.h"

namespace quillon::conformance {

namespace fs = std::filesystem;

std::ptrdiff_t OpenDescriptors() {
  std::error_code none;
  std::ptrdiff_t count = 0;
  fs::directory_iterator entry("/proc/self/fd", none);
  for (; !none && entry != fs::directory_iterator(); entry.increment(none)) ++count;
  return none ? -1 : count;
}

fs::path ProgramFile(const char* name) {
  std::error_code none;
  fs::path self = fs::canonical("/proc/self/exe", none);
  if (none) self = fs::absolute(name, none);
  return self;
}

}  // namespace quillon::conformance
