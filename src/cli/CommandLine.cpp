// SPDX-License-Identifier: MIT
#include "cli/CommandLine.h"

#include <vector>

#include "devlink/DeviceText.h"

namespace quillon {

std::optional<int> ReadCommandLine(CLI::App& app, std::span<const std::string> arguments,
                                   std::ostream& out, std::ostream& err, int wrong) {
  // A path may begin with a slash on every system.
  app.allow_windows_style_options(false);
  for (CLI::App* const command : app.get_subcommands({}))
    command->allow_windows_style_options(false);
  app.failure_message([](const CLI::App* program, const CLI::Error& error) {
    const std::string& name = program->get_name();
    return name + ": " + ShownText(std::string(error.what())) + ". See " + name + " --help.\n";
  });
  try {
    app.parse(std::vector<std::string>(arguments.rbegin(), arguments.rend()));  // last one first
  } catch (const CLI::ParseError& error) {
    return app.exit(error, out, err) == 0 ? 0 : wrong;
  }
  return std::nullopt;
}

}  // namespace quillon
