// SPDX-License-Identifier: MIT
#include "conformance/Options.h"

#include <charconv>

namespace quillon::conformance {

const std::string_view kHelp =
    R"(Usage: kvusb-conformance [options] LIBRARY

Examines whether a HID access library keeps the promises of kvusb.h, on the boards that are there.
It only asks: nothing on a board is changed, unless an option says so.

LIBRARY is a file, or hid, sim or replay for one of our own.

  --restart             also restarts each board, in its mode
  --vanish PID:COMMAND  also sends the command (hexadecimal, as the product id) to a board that is
                        known to leave the bus then: 1010:22
  --unplug              also asks you to pull a board
  --help                this text

Exit status: 0 nothing failed, 1 something did, 2 nothing was examined.
)";

namespace {

template <typename Number>
bool ReadHex(std::string_view text, Number& number) {
  const char* const end = text.data() + text.size();
  const auto [stopped, error] = std::from_chars(text.data(), end, number, 16);
  return !text.empty() && error == std::errc() && stopped == end;
}

std::optional<VanishOrder> ParseVanish(std::string_view text) {
  VanishOrder order;
  const auto colon = text.find(':');
  if (colon == std::string_view::npos || !ReadHex(text.substr(0, colon), order.product) ||
      !ReadHex(text.substr(colon + 1), order.command)) {
    return std::nullopt;
  }
  return order;
}

}  // namespace

std::variant<Options, std::string> ParseOptions(std::span<const std::string> arguments) {
  Options options;
  for (std::size_t i = 0; i < arguments.size(); ++i) {
    const std::string& word = arguments[i];
    if (word == "--help" || word == "-h") {
      options.help = true;
      return options;
    }
    if (word == "--restart") {
      options.restart = true;
    } else if (word == "--unplug") {
      options.unplug = true;
    } else if (word == "--vanish") {
      options.vanish = ParseVanish(++i < arguments.size() ? arguments[i] : "");
      if (!options.vanish) return "--vanish needs a product id and a command: 1010:22.";
    } else if (word.starts_with("-")) {
      return "There is no option \"" + word + "\".";
    } else if (!options.library.empty()) {
      return "One library at a time, not \"" + word + "\" too.";
    } else {
      options.library = word;
    }
  }
  if (options.library.empty()) return "Which library?";
  return options;
}

}  // namespace quillon::conformance
