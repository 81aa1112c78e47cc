// SPDX-License-Identifier: MIT
#pragma once

#include <memory>
#include <string>
#include <vector>

#include "kvusb/host/Message.h"

// What the host needs of its system.
namespace quillon::host {

// The command line in UTF-8, without the program's name.
std::vector<std::string> CommandLine(int argc, char** argv);

// The end of a pipe that the program has left open for this process; `number` is what it calls it.
// Nothing that the library starts has it too.
std::unique_ptr<Pipe> OpenInherited(const std::string& number);

// From now on this process ends at once when the library crashes, without asking anybody, and when
// the program has ended, even in the middle of a call.
void EndWithProgram();

}  // namespace quillon::host
