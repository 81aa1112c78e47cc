// SPDX-License-Identifier: MIT
#pragma once

#include <string>
#include <vector>

namespace quillon {

// What stands behind the program's name on the command line, in UTF-8. From now on the console
// takes what the program prints for UTF-8 too.
std::vector<std::string> Arguments(int argc, char** argv);

}  // namespace quillon
