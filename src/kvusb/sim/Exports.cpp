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
#include "kvusb/Exports.h"

#include <cerrno>
#include <charconv>
#include <cstdlib>
#include <cstring>
#include <fstream>
#include <iterator>
#include <memory>
#include <string>

#include "kvusb/kvusb.h"
#include "kvusb/sim/Bus.h"

namespace quillon::sim {
namespace {

constexpr unsigned kLongestLatency = 1'000'000;

struct Library {
  std::unique_ptr<Bus> bus;
  std::string problem;
};

std::string Variable(const char* name) {
  const char* value = std::getenv(name);
  return value == nullptr ? "" : value;
}

Rig ChosenRig(std::string& problem) {
  const std::string file = Variable("QUILLON_SIM_RIG");
  if (file.empty()) return DefaultRig();
  std::ifstream stream(file, std::ios::binary);
  const int reason = errno;
  if (!stream.is_open()) {
    problem = "The rig file " + file + " cannot be opened: " + std::strerror(reason) + ".";
    return {};
  }
  const std::string text((std::istreambuf_iterator<char>(stream)), {});
  auto parsed = ParseRig(text);
  if (const auto* wrong = std::get_if<std::string>(&parsed)) {
    problem = "The rig file " + file + " cannot be used. " + *wrong;
    return {};
  }
  return std::get<Rig>(std::move(parsed));
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

Library& TheLibrary() {
  static Library library;
  if (!library.bus) {
    Rig rig = ChosenRig(library.problem);
    BusOptions options = ChosenOptions(library.problem);
    library.bus = std::make_unique<Bus>(std::move(rig), std::move(options));
  }
  return library;
}

}  // namespace
}  // namespace quillon::sim

extern "C" {

KVUSB_EXPORT std::int32_t KVUSB_CALL DetectHID(std::uint32_t* count, DeviceRecord* first,
                                               std::uint32_t type) {
  using namespace quillon;
  using namespace quillon::sim;
  return Guarded(0, [&] { return TheLibrary().bus->Detect(count, first, type); });
}

KVUSB_EXPORT std::int32_t KVUSB_CALL WriteData(DeviceRecord* record, std::uint8_t* packet) {
  using namespace quillon;
  using namespace quillon::sim;
  return Guarded(KVUSB_WRITE_FAILED, [&] { return TheLibrary().bus->Write(record, packet); });
}

KVUSB_EXPORT std::int32_t KVUSB_CALL ReadData(DeviceRecord* record, std::uint8_t* packet) {
  using namespace quillon;
  using namespace quillon::sim;
  return Guarded(KVUSB_READ_FAILED, [&] { return TheLibrary().bus->Read(record, packet); });
}

KVUSB_EXPORT std::int32_t KVUSB_CALL CloseDevices(std::uint32_t count, DeviceRecord* first) {
  using namespace quillon;
  using namespace quillon::sim;
  return Guarded(0, [&] { return TheLibrary().bus->Close(count, first); });
}

KVUSB_EXPORT std::int32_t KVUSB_CALL SetDeviceChangeHandler(DeviceChangeHandler handler,
                                                            void* context) {
  using namespace quillon;
  using namespace quillon::sim;
  return Guarded(0, [&] {
    TheLibrary().bus->SetChangeHandler(handler, context);
    return 1;
  });
}

KVUSB_EXPORT std::int32_t KVUSB_CALL DescribeProblem(const DeviceRecord* record, char* text,
                                                     std::uint32_t size) {
  using namespace quillon;
  using namespace quillon::sim;
  return Guarded(0, [&] {
    CopyText("", text, size);
    const Library& library = TheLibrary();
    std::string problem = library.bus->Problem(record);
    if (record == nullptr && !library.problem.empty()) problem = library.problem;
    CopyText(problem, text, size);
    return problem.empty() ? KVUSB_PROBLEM_NONE : KVUSB_PROBLEM_OTHER;
  });
}

}  // extern "C"
