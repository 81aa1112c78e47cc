// SPDX-License-Identifier: MIT
#pragma once

#include <string>

namespace quillon::testing {

// Sets a variable of this process's environment, or takes it away.
void SetVariable(const std::string& name, const std::string& value);
void UnsetVariable(const std::string& name);

}  // namespace quillon::testing
