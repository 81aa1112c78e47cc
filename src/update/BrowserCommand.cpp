// SPDX-License-Identifier: MIT
#include "update/BrowserCommand.h"

namespace quillon {

std::string BrowserCommand(std::string_view line, std::string_view address) {
  auto end = line.find("\"%1\"");
  if (end == std::string_view::npos) end = line.find("%1");
  std::string command(line.substr(0, end));
  command += ' ';
  command += address;
  return command;
}

}  // namespace quillon
