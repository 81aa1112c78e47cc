// SPDX-License-Identifier: MIT
#pragma once

#include <string>
#include <vector>

// What installs the udev rule: a shell script that holds the rule's text, so that it works wherever
// the program was started from. A file that it replaces is kept, with ".old" added to its name.
// Boards that are plugged in get the rule at once. Run as root; ends with 0 when the rule is
// installed and applied, else with 1 and a reason on stderr.
namespace quillon {

// The script as one line for a terminal, with sudo.
std::string CopyableCommand();

// The script as the arguments of pkexec, which asks for the password in a window. Where it has no
// window to ask in, it would ask in the terminal. That is turned off: nobody would see it.
std::vector<std::string> ElevatedArguments();

}  // namespace quillon
