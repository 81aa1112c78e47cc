// SPDX-License-Identifier: MIT
#pragma once

#include <cstdint>
#include <functional>
#include <memory>
#include <span>
#include <string>
#include <vector>

#include "boards/WiredBoard.h"

namespace quillon::testing {

// For the question whether something works on a Linux kernel: simulated boards as USB devices with
// hidraw nodes in an emulated /sys and /dev, with the kernel's events for each that comes or goes.
// The process runs under umockdev's preloaded library, as quillon_test(... KERNEL) sees to; it and
// the processes that it starts see these boards, and no others, while the object lives.
//
// A board answers on a thread of the emulation, at once. Everything else is done by the thread that
// owns the object.
class EmulatedKernel {
 public:
  // `after_event` runs after each event, for somebody in this process who listens to them: no more
  // than ten may wait for a listener.
  explicit EmulatedKernel(std::function<void()> after_event = {});
  ~EmulatedKernel();
  EmulatedKernel(const EmulatedKernel&) = delete;
  EmulatedKernel& operator=(const EmulatedKernel&) = delete;

  // For a reader that asks for more than one report's bytes at a time, which a kernel answers with
  // one report all the same: the terminals that stand in for nodes know no reports, so from now on
  // a report waits, up to a second, until the one before it was fetched.
  void SendOneByOne();

  // Takes a rig's boards, in order, and plugs in those that are plugged there. Boards are counted
  // from 0 over all calls.
  void Add(const sim::Rig& rig);
  void Add(sim::BoardSpec spec);
  // Mice of another maker, or of the one given.
  void AddOthers(int count, std::uint16_t vendor = 0x1234);

  void Plug(std::size_t board);
  void Unplug(std::size_t board);

  // Boards that were told to restart leave and come back; those that vanished are gone for good.
  // True when there was one.
  bool FinishRestarts();
  // Whether FinishRestarts() has something to do, and the answer before it has been fetched.
  bool IsRestartDue() const;

  sim::WiredBoard& Board(std::size_t board);
  std::size_t Count() const;

  // The file of a plugged board's configuration interface, as "/dev/hidraw3".
  std::string Device(std::size_t board) const;

  // Whether anyone but the owner of this process may open the files of the boards plugged in now.
  void LetOthersOpen(bool may);

  // A report that nobody asked for, or asked for long ago.
  void SendReport(std::size_t board, std::span<const std::uint8_t> report);

 private:
  class Usb;
  struct Place;

  std::unique_ptr<Usb> usb_;
  std::vector<std::unique_ptr<Place>> places_;
};

}  // namespace quillon::testing
