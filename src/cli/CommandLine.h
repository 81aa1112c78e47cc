// SPDX-License-Identifier: MIT
#pragma once

#include <CLI/CLI.hpp>
#include <optional>
#include <ostream>
#include <span>
#include <string>

namespace quillon {

// Reads `arguments`, those behind a program's name, as `app` describes them. Nothing when the
// program may go on. Else what it exits with: 0 after --help, whose text went to `out`, or `wrong`
// after a sentence on what makes no sense, which went to `err`.
std::optional<int> ReadCommandLine(CLI::App& app, std::span<const std::string> arguments,
                                   std::ostream& out, std::ostream& err, int wrong);

}  // namespace quillon
