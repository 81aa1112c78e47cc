// SPDX-License-Identifier: MIT
//
// kvusb-host CALLS EVENTS LIBRARY: loads a HID library in a process of its own and calls it for the
// program that has started it, over the two pipes whose numbers it was given.
#include <cstdio>
#include <memory>
#include <string>
#include <variant>

#include "devlink/LoadedLibrary.h"
#include "kvusb/host/HostServer.h"
#include "kvusb/host/HostSide.h"

namespace quillon::host {
namespace {

bool SayHello(Pipe& calls, const std::string* problem) {
  const auto message = std::make_unique<Message>();
  message->Begin(Function::kHello);
  message->head.number = kProtocol;
  message->head.result = problem == nullptr ? 0 : 1;
  if (problem != nullptr) message->Put(*problem);
  return Send(calls, *message);
}

int Serve(const std::vector<std::string>& arguments) {
  EndWithProgram();
  const auto calls = OpenInherited(arguments[0]);
  const auto events = OpenInherited(arguments[1]);
  const auto loaded = LoadLibraryFile(std::filesystem::path(arguments[2]));
  const auto* const problem = std::get_if<std::string>(&loaded);
  if (!SayHello(*calls, problem) || problem != nullptr) return 1;
  HostServer(*std::get<std::unique_ptr<HidLibrary>>(loaded), *calls, *events).Serve();
  return 0;
}

}  // namespace
}  // namespace quillon::host

int main(int argc, char** argv) {
  const auto arguments = quillon::host::CommandLine(argc, argv);
  if (arguments.size() == 3) return quillon::host::Serve(arguments);
  std::fputs("kvusb-host runs a HID library for Quillon, which starts it.\n", stderr);
  return 2;
}
