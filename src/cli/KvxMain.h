// SPDX-License-Identifier: MIT
#pragma once

#include <ostream>
#include <span>
#include <string>

namespace quillon {

// Exit statuses of `kvx`.
inline constexpr int kKvxDone = 0;
inline constexpr int kKvxBad = 1;    // the file cannot be read, written, made or accepted
inline constexpr int kKvxUsage = 2;  // the command line makes no sense

// The program `kvx`: `arguments` are those after its name. Writes what was asked for to `out`, and
// what is wrong, as sentences, to `err`.
int KvxMain(std::span<const std::string> arguments, std::ostream& out, std::ostream& err);

}  // namespace quillon
