// SPDX-License-Identifier: MIT
#pragma once

#include <string>

namespace quillon {

// What a file's name has behind it while this process writes the file anew: so that two processes
// never share one, and what a process leaves behind is found.
std::string OwnEnding(long process);

// Whether there is no such process any more.
bool HasEnded(int process);

}  // namespace quillon
