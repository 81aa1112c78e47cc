// SPDX-License-Identifier: MIT
#pragma once

#include <chrono>
#include <cstdint>
#include <deque>
#include <filesystem>
#include <optional>
#include <span>
#include <utility>
#include <vector>

#include "boards/WiredBoard.h"
#include "usbip/ControlPipe.h"
#include "usbip/UsbIpPackets.h"

namespace quillon::usbip {

// A simulated board as a USB device: takes the host's bytes of a USB/IP conversation and gives back
// the answers. It has no clock and no socket; its owner says what time it is, moves the bytes, and
// puts the device on the bus or takes it off as OnBus() says. Each time on the bus is a
// conversation of its own.
//
// A board that restarts stays for a moment after its answer, so that the host has it before the
// device goes, then is away for as long as the rig says, and comes back in its other mode.
class VirtualBoard {
 public:
  using Time = std::chrono::steady_clock::time_point;

  explicit VirtualBoard(sim::BoardSpec spec,
                        const std::optional<std::filesystem::path>& state_folder = std::nullopt);

  const sim::WiredBoard& Wired() const { return wired_; }

  bool OnBus() const { return place_ == Place::kBus; }

  // Bytes from the host. A conversation that makes no sense ends: the board unplugs itself.
  void Receive(std::span<const std::uint8_t> bytes, Time now);

  // Does what is due: answers, leaves or comes back. Leaving and coming back in one call would look
  // as if nothing had happened, so one call does only one of the two.
  void Advance(Time now);

  // When Advance() has something to do next. Nothing if only the host can start something.
  std::optional<Time> NextStep() const;

  // Takes the bytes that are to be sent to the host. They have to be sent before the board is taken
  // off the bus, too.
  Bytes TakeOutput() { return std::exchange(output_, {}); }

  // Somebody took the board off the bus; it does not come back.
  void Unplug();

 private:
  enum class Place : std::uint8_t { kBus, kRestarting, kGone };
  struct Queued {
    Time due;
    Bytes data;
  };
  struct Transfer {
    std::uint32_t number, room;
  };
  using Transfers = std::deque<Transfer>;  // those that wait for data

  void Handle(const Submit& submit, Time now);
  void Handle(const Unlink& unlink, Time now);
  void HandleControl(const Submit& submit, Time now);
  // The status of the transfer that brought the report.
  std::int32_t TakeReport(std::span<const std::uint8_t> report, Time now);
  void FinishOut(const Submit& submit, std::int32_t status);
  void Deliver(Time now);
  void ComeBack();
  std::size_t ConfigurationInterface() const;
  bool AnswerIsWaitedFor() const;
  sim::WiredBoard wired_;
  Place place_ = Place::kBus;
  std::optional<Time> leaves_at_, back_at_;
  Time busy_until_{};
  std::deque<Queued> answers_;

  // The conversation.
  ControlPipe control_;
  RequestReader reader_;
  std::vector<Transfers> waiting_;  // IN transfers, by interface
  Bytes output_;
};

}  // namespace quillon::usbip
