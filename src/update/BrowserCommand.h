// SPDX-License-Identifier: MIT
#pragma once

#include <string>
#include <string_view>

namespace quillon {

// Turns the command line that a system keeps for a kind of file into the one that opens an address:
// all from its placeholder for the file on ("%1", with its quotes if it has them) gives way to a
// blank and the address. Without a placeholder the address follows the whole line.
std::string BrowserCommand(std::string_view line, std::string_view address);

}  // namespace quillon
