// SPDX-License-Identifier: MIT
#pragma once

#include <cstdint>
#include <optional>
#include <span>
#include <string>
#include <string_view>
#include <variant>

namespace quillon::conformance {

// A board that leaves the bus when it is sent this command.
struct VanishOrder {
  std::uint16_t product = 0;
  std::uint8_t command = 0;
};

struct Options {
  std::string library;
  bool help = false;
  bool restart = false;
  bool unplug = false;
  std::optional<VanishOrder> vanish;
};

extern const std::string_view kHelp;

// The options, or a sentence on what makes no sense.
std::variant<Options, std::string> ParseOptions(std::span<const std::string> arguments);

}  // namespace quillon::conformance
