// SPDX-License-Identifier: MIT
#include "boards/Faults.h"

namespace quillon::sim {
namespace {

bool Concerns(const Fault& fault, Request request) {
  const auto is = [&](const std::optional<std::uint8_t>& wanted, std::size_t at) {
    return !wanted || *wanted == request[at];
  };
  return fault.kind != FaultKind::kCloseFails && is(fault.command, kCommandAt) &&
         is(fault.function, kPayloadAt) && is(fault.node, kPayloadAt + 1);
}

}  // namespace

bool Faults::Armed::Fires() {
  ++seen;
  return seen >= fault.nth && (fault.times == 0 || seen - fault.nth < fault.times);
}

std::optional<Fault> Faults::Match(Request request) {
  std::optional<Fault> found;
  for (Armed& armed : armed_)
    if (Concerns(armed.fault, request) && armed.Fires() && !found) found = armed.fault;
  return found;
}

bool Faults::MatchClose() {
  bool found = false;
  for (Armed& armed : armed_)
    if (armed.fault.kind == FaultKind::kCloseFails && armed.Fires()) found = true;
  return found;
}

}  // namespace quillon::sim
