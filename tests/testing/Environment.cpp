// SPDX-License-Identifier: MIT
#include "testing/Environment.h"

#include <stdlib.h>

namespace quillon::testing {

#ifdef _WIN32
// An empty value takes the variable away, which our programs hold to be the same.
void SetVariable(const std::string& name, const std::string& value) {
  _putenv_s(name.c_str(), value.c_str());
}
void UnsetVariable(const std::string& name) { _putenv_s(name.c_str(), ""); }
#else
void SetVariable(const std::string& name, const std::string& value) {
  setenv(name.c_str(), value.c_str(), 1);
}
void UnsetVariable(const std::string& name) { unsetenv(name.c_str()); }
#endif

}  // namespace quillon::testing
