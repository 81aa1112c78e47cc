// SPDX-License-Identifier: MIT
//
// libkvusb-sim: the simulated boards as a HID library (see kvusb.h).
//
//   QUILLON_SIM_RIG         file with the rig (see Rig.h); without it the rig that is built in
//   QUILLON_SIM_STATE       folder in which the boards keep their state; without it they keep none
//   QUILLON_SIM_LATENCY_US  microseconds of an exchange, 0 to 1000000; 2000 without it
//
// The variables are read at the first call. With a rig that cannot be used there are no boards, and
// DescribeProblem(NULL) says why.
#include <charconv>
#include <cstdlib>
#include <string>
#include <utility>

#include "boards/RigFile.h"
#include "kvusb/Exports.h"
#include "sim/Bus.h"
#include "storage/FilePath.h"

namespace quillon::sim {
namespace {

constexpr unsigned kLongestLatency = 1'000'000;

std::string Variable(const char* name) {
  const char* value = std::getenv(name);
  return value == nullptr ? "" : value;
}

Rig ChosenRig(std::string& problem) {
  const std::string file = Variable("QUILLON_SIM_RIG");
  if (file.empty()) return DefaultRig();
  auto rig = ReadRigFile(FilePath(file));
  if (auto* const wrong = std::get_if<std::string>(&rig)) {
    problem = std::move(*wrong);
    return {};
  }
  return std::get<Rig>(std::move(rig));
}

BusOptions ChosenOptions(std::string& problem) {
  BusOptions options;
  if (const std::string folder = Variable("QUILLON_SIM_STATE"); !folder.empty())
    options.state_folder = FilePath(folder);
  const std::string latency = Variable("QUILLON_SIM_LATENCY_US");
  if (latency.empty()) return options;
  unsigned us = 0;
  const char* end = latency.data() + latency.size();
  const auto [stopped, error] = std::from_chars(latency.data(), end, us);
  if (error == std::errc{} && stopped == end && us <= kLongestLatency)
    options.latency = std::chrono::microseconds(us);
  else if (problem.empty())
    problem = "QUILLON_SIM_LATENCY_US must be a number from 0 to 1000000, not \"" + latency + "\".";
  return options;
}

// The bus as the environment asks for it.
Bus ChosenBus() {
  std::string problem;
  Rig rig = ChosenRig(problem);
  BusOptions options = ChosenOptions(problem);
  options.problem = std::move(problem);
  return Bus(std::move(rig), std::move(options));
}

}  // namespace
}  // namespace quillon::sim

quillon::HidLibrary& quillon::TheLibrary() {
  static sim::Bus bus = sim::ChosenBus();
  return bus;
}
