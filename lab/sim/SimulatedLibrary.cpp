// SPDX-License-Identifier: MIT
//
// libkvusb-sim: the simulated boards as a HID access library (see kvusb.h).
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

#include "kvusb/AccessLibrary.h"
#include "boards/RigFile.h"
#include "sim/Bus.h"

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
  auto rig = ReadRigFile(file);
  if (auto* const wrong = std::get_if<std::string>(&rig)) {
    problem = std::move(*wrong);
    return {};
  }
  return std::get<Rig>(std::move(rig));
}

BusOptions ChosenOptions(std::string& problem) {
  BusOptions options;
  if (const std::string folder = Variable("QUILLON_SIM_STATE"); !folder.empty())
    options.state_folder = folder;
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
class SimulatedLibrary : public AccessLibrary {
 public:
  std::int32_t Detect(std::uint32_t* count, DeviceRecord* first, std::uint32_t type) override {
    return bus_.Detect(count, first, type);
  }
  std::int32_t Write(const DeviceRecord* record, const std::uint8_t* packet) override {
    return bus_.Write(record, packet);
  }
  std::int32_t Read(const DeviceRecord* record, std::uint8_t* packet) override {
    return bus_.Read(record, packet);
  }
  std::int32_t Close(std::uint32_t count, const DeviceRecord* first) override {
    return bus_.Close(count, first);
  }
  std::int32_t Describe(const DeviceRecord* record, std::string& text) override {
    text = record == nullptr && !problem_.empty() ? problem_ : bus_.Problem(record);
    return text.empty() ? KVUSB_PROBLEM_NONE : KVUSB_PROBLEM_OTHER;
  }
  void SetChangeHandler(DeviceChangeHandler handler, void* context) override {
    bus_.SetChangeHandler(handler, context);
  }

 private:
  std::string problem_;
  Rig rig_ = ChosenRig(problem_);
  Bus bus_{std::move(rig_), ChosenOptions(problem_)};
};

}  // namespace
}  // namespace quillon::sim

quillon::AccessLibrary& quillon::TheLibrary() {
  static sim::SimulatedLibrary library;
  return library;
}
