// SPDX-License-Identifier: MIT
#pragma once

#include <cstdint>
#include <optional>
#include <ostream>
#include <span>
#include <string>
#include <variant>

namespace quillon::conformance {

// A board that leaves the bus when it is sent this command.
struct VanishOrder {
  std::uint16_t product = 0;
  std::uint8_t command = 0;
};

struct Options {
  std::string library;
  bool restart = false;
  bool unplug = false;
  std::optional<VanishOrder> vanish;
};

// The options, or what the program exits with after it said why, or after --help.
std::variant<Options, int> ReadOptions(std::span<const std::string> arguments, std::ostream& out,
                                       std::ostream& err);

}  // namespace quillon::conformance
