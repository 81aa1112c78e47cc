// SPDX-License-Identifier: MIT
#pragma once

#include <string>
#include <vector>

// What installs the udev rule: a shell script that holds the rule's text, so that it works wherever
// the program was started from. It keeps a file that it replaces, with ".old" behind its name, and
// applies the rule to boards that are plugged in. Run as root; ends with 0 when the rule is
// installed and applied, else with 1 and a reason on stderr.
namespace quillon {

// The script as one line for a terminal, with sudo.
std::string CopyableCommand();

// The script as the arguments of pkexec, which asks for the password in a window. Its own question
// in the terminal, in place of a missing window, is turned off: nobody would see it.
std::vector<std::string> ElevatedArguments();

}  // namespace quillon
