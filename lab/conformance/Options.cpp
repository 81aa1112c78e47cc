// SPDX-License-Identifier: MIT
#include "conformance/Options.h"

#include <charconv>
#include <string_view>

#include "cli/CommandLine.h"
#include "conformance/ConformanceMain.h"

namespace quillon::conformance {
namespace {

template <typename Number>
bool ReadHex(std::string_view text, Number& number) {
  const char* const end = text.data() + text.size();
  const auto [stopped, error] = std::from_chars(text.data(), end, number, 16);
  return !text.empty() && error == std::errc() && stopped == end;
}

VanishOrder ParseVanish(std::string_view text) {
  VanishOrder order;
  const auto colon = text.find(':');
  if (colon == std::string_view::npos || !ReadHex(text.substr(0, colon), order.product) ||
      !ReadHex(text.substr(colon + 1), order.command)) {
    throw CLI::ValidationError("--vanish", "It needs a product id and a command: 1010:22");
  }
  return order;
}

}  // namespace

std::variant<Options, int> ReadOptions(std::span<const std::string> arguments, std::ostream& out,
                                       std::ostream& err) {
  CLI::App app(
      "Examines whether a HID access library keeps the promises of kvusb.h, on the boards that are "
      "there. It only asks: nothing on a board is changed, unless an option says so.",
      "kvusb-conformance");
  app.footer("Exit status: 0 nothing failed, 1 something did, 2 nothing was examined.");
  Options options;
  app.add_option("LIBRARY", options.library, "a file, or hid, sim or replay for one of our own")
      ->required()
      ->type_name("");
  app.add_flag("--restart", options.restart, "also restarts each board, in its mode");
  app.add_option_function<std::string>(
         "--vanish", [&](const std::string& text) { options.vanish = ParseVanish(text); },
         "also sends the command (hexadecimal, as the product id) to a board that is known to "
         "leave "
         "the bus then: 1010:22")
      ->type_name("PID:COMMAND")
      ->take_last();
  app.add_flag("--unplug", options.unplug, "also asks you to pull a board");
  if (const auto status = ReadCommandLine(app, arguments, out, err, kNothingExamined))
    return *status;
  return options;
}

}  // namespace quillon::conformance
