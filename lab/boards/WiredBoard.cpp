// SPDX-License-Identifier: MIT
#include "boards/WiredBoard.h"

#include <algorithm>
#include <utility>

#include "boards/StateFile.h"

namespace quillon::sim {

WiredBoard::WiredBoard(BoardSpec spec, const std::optional<std::filesystem::path>& state_folder)
    : board_(std::move(spec)), state_folder_(state_folder) {
  for (const Fault& fault : Spec().faults) faults_.Add(fault);
  if (!state_folder_) return;
  LoadedState loaded = LoadState(*state_folder_, Spec());
  if (loaded.state) board_.State() = std::move(*loaded.state);
  load_problem_ = std::move(loaded.problem);
  board_.LosePower();
}

WiredBoard::Outcome WiredBoard::Take(Request request) {
  const auto fault = faults_.Match(request);
  const auto befalls = [&](FaultKind kind) { return fault && fault->kind == kind; };
  Outcome outcome;
  if (befalls(FaultKind::kWriteFails)) {
    outcome.delivery = Delivery::kNotTaken;
    return outcome;
  }
  if (befalls(FaultKind::kVanish)) {
    outcome.delivery = Delivery::kVanished;
    return outcome;
  }
  const Reply reply =
      befalls(FaultKind::kStatus) ? board_.Fail(fault->value, request) : board_.Handle(request);
  if (reply.changed) Keep();
  outcome.answer = reply.answer;
  outcome.busy = reply.busy;
  outcome.restart = reply.restart;
  if (befalls(FaultKind::kWrongEcho)) outcome.answer[0] = fault->value;
  if (befalls(FaultKind::kShortAnswer))
    outcome.bytes = std::min<std::size_t>(fault->value, outcome.bytes);
  if (befalls(FaultKind::kReadFails)) outcome.delivery = Delivery::kNoAnswer;
  if (befalls(FaultKind::kStall)) outcome.delivery = Delivery::kStalled;
  return outcome;
}

void WiredBoard::Restart() {
  board_.Restart();
  Keep();
}

void WiredBoard::Unplug() {
  board_.LosePower();
  Keep();
}

const std::string& WiredBoard::SerialText() const {
  return Spec().serial_text ? *Spec().serial_text : board_.State().serial;
}

void WiredBoard::Keep() {
  if (state_folder_) save_problem_ = SaveState(*state_folder_, Spec(), board_.State());
}

}  // namespace quillon::sim
