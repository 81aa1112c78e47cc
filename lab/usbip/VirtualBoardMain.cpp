// SPDX-License-Identifier: MIT
#include "usbip/VirtualBoardMain.h"

#include <filesystem>
#include <optional>
#include <system_error>
#include <variant>

#include "boards/RigFile.h"
#include "cli/CommandLine.h"
#include "usbip/BoardHost.h"

namespace quillon::usbip {
namespace {

struct Request {
  std::string rig = "default";
  std::optional<std::filesystem::path> state;
};

// The request, or what the program exits with.
std::variant<Request, int> ReadRequest(std::span<const std::string> arguments, std::ostream& out,
                                       std::ostream& err) {
  CLI::App app(
      "Plugs simulated boards into this machine's own USB bus, where every program sees them as it "
      "sees real ones, until it is stopped with Ctrl-C or SIGTERM.",
      "quillon-virtual-board");
  app.footer(
      R"(It needs Linux with the module vhci_hcd ("modprobe vhci_hcd" as root), and the right to write to
/sys/devices/platform/vhci_hcd.0/attach: root has it.

Exit status: 0 stopped, 1 the boards cannot be plugged in, 2 the command line makes no sense.)");
  Request request;
  app.add_option("RIG", request.rig,
                 "file that lists the boards; \"default\", or none, for those that are built in")
      ->type_name("");
  app.add_option("--state", request.state,
                 "keep what the boards store in this folder; without it they forget it at the end")
      ->type_name("FOLDER")
      ->take_last();
  if (const auto status = ReadCommandLine(app, arguments, out, err, kBoardsUsage)) return *status;
  return request;
}

}  // namespace

int VirtualBoardMain(std::span<const std::string> arguments, const Vhci& vhci, int stop,
                     std::ostream& out, std::ostream& err) {
  const auto complain = [&](const std::string& sentence) {
    err << "quillon-virtual-board: " << sentence << '\n';
    return kBoardsBad;
  };
  const auto read = ReadRequest(arguments, out, err);
  if (const auto* const status = std::get_if<int>(&read)) return *status;
  const auto& [path, state] = std::get<Request>(read);
  const std::variant<sim::Rig, std::string> rig =
      path == "default" ? sim::DefaultRig() : sim::ReadRigFile(path);
  if (const auto* wrong = std::get_if<std::string>(&rig)) return complain(*wrong);
  if (state) {
    std::error_code error;
    std::filesystem::create_directories(*state, error);
    if (error)
      return complain("The folder " + state->string() + " cannot be made: " + error.message() +
                      ".");
  }
  BoardHost host(vhci, std::get<sim::Rig>(rig), state, out, err);
  return host.Run(stop) ? kBoardsDone : kBoardsBad;
}

}  // namespace quillon::usbip
