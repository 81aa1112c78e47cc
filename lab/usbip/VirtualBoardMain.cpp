// SPDX-License-Identifier: MIT
#include "usbip/VirtualBoardMain.h"

#include <filesystem>
#include <optional>
#include <string_view>
#include <system_error>
#include <utility>
#include <variant>

#include "boards/RigFile.h"
#include "usbip/BoardHost.h"

namespace quillon::usbip {
namespace {

constexpr std::string_view kHelp =
    R"(Usage: quillon-virtual-board [--state FOLDER] [RIG]

Plugs simulated boards into this machine's own USB bus, where every program sees them as it sees
real ones, until it is stopped with Ctrl-C or SIGTERM.

  RIG             file that lists the boards; "default", or none, for those that are built in
  --state FOLDER  keep what the boards store in this folder; without it they forget it at the end
  --help          this text

It needs Linux with the module vhci_hcd ("modprobe vhci_hcd" as root), and the right to write to
/sys/devices/platform/vhci_hcd.0/attach: root has it.

Exit status: 0 stopped, 1 the boards cannot be plugged in, 2 the command line makes no sense.
)";

struct Request {
  std::string rig = "default";
  std::optional<std::filesystem::path> state;
};

std::variant<Request, std::string> ParseRequest(std::span<const std::string> arguments) {
  Request request;
  bool named = false;
  for (std::size_t i = 0; i < arguments.size(); ++i) {
    if (arguments[i] == "--state") {
      if (++i == arguments.size()) return "--state takes a folder.";
      request.state = arguments[i];
    } else if (arguments[i].starts_with('-')) {
      return "There is no option \"" + arguments[i] + "\".";
    } else if (std::exchange(named, true)) {
      return "There is one rig at a time.";
    } else {
      request.rig = arguments[i];
    }
  }
  return request;
}

}  // namespace

int VirtualBoardMain(std::span<const std::string> arguments, const Vhci& vhci, int stop,
                     std::ostream& out, std::ostream& err) {
  const auto complain = [&](const std::string& sentence, VirtualBoardStatus status) {
    err << "quillon-virtual-board: " << sentence << '\n';
    return status;
  };
  if (!arguments.empty() && (arguments[0] == "--help" || arguments[0] == "-h")) {
    out << kHelp;
    return kBoardsDone;
  }
  const auto request = ParseRequest(arguments);
  if (const auto* wrong = std::get_if<std::string>(&request))
    return complain(*wrong + " See quillon-virtual-board --help.", kBoardsUsage);
  const auto& [path, state] = std::get<Request>(request);
  const std::variant<sim::Rig, std::string> rig =
      path == "default" ? sim::DefaultRig() : sim::ReadRigFile(path);
  if (const auto* wrong = std::get_if<std::string>(&rig)) return complain(*wrong, kBoardsBad);
  if (state) {
    std::error_code error;
    std::filesystem::create_directories(*state, error);
    if (error)
      return complain("The folder " + state->string() + " cannot be made: " + error.message() + ".",
                      kBoardsBad);
  }
  BoardHost host(vhci, std::get<sim::Rig>(rig), state, out, err);
  return host.Run(stop) ? kBoardsDone : kBoardsBad;
}

}  // namespace quillon::usbip
