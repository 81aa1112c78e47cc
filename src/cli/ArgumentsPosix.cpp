// SPDX-License-Identifier: MIT
#include "cli/Arguments.h"

namespace quillon {

std::vector<std::string> Arguments(int argc, char** argv) {
  return {argv + (argc > 0 ? 1 : 0), argv + argc};
}

}  // namespace quillon
