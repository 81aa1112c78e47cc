// SPDX-License-Identifier: MIT
#pragma once

#include <chrono>
#include <cstdint>
#include <memory>
#include <span>
#include <string>
#include <vector>

#include "kvusb/HidPacket.h"
#include "kvusb/Problem.h"

namespace quillon {

// The configuration interface of a board, as the system lists it.
struct HidNode {
  std::string device;   // what opens it, as "/dev/hidraw3"
  std::string arrival;  // with `device`, of this board from when it came until it goes
  std::uint32_t type = 0;
  std::uint16_t product_id = 0;  // USB idProduct
  std::uint16_t release = 0;     // USB bcdDevice; 0 where the system does not know it
  std::string product_text;      // USB iProduct, iManufacturer, iSerialNumber: UTF-8 from a board
  std::string manufacturer;      // that means well
  std::string serial;
};

// What is there, in the order in which it came where the system knows that, and what kept the
// system from listing more.
struct HidListing {
  std::vector<HidNode> nodes;
  Problem problem;
};

// A board that was opened.
class HidHandle {
 public:
  using Clock = std::chrono::steady_clock;

  HidHandle() = default;
  HidHandle(const HidHandle&) = delete;
  HidHandle& operator=(const HidHandle&) = delete;
  virtual ~HidHandle() = default;

  // False when the board has not taken the report. A board that neither takes nor refuses it costs
  // seconds.
  virtual bool Write(PacketSpan packet) = 0;

  // The oldest report that was not read yet, without its report number, as far as it fits: its
  // bytes, 0 for none by then, -1 for a board that has left.
  virtual int Read(std::span<std::uint8_t> report, Clock::time_point deadline) = 0;
};

// A board's handle, or the system's number for the reason why there is none.
struct OpenedHid {
  std::unique_ptr<HidHandle> handle;
  int error = 0;
};

// What HidBoards asks of the system that it runs on. `device` is that of a HidNode.
class HidSystem {
 public:
  HidSystem() = default;
  HidSystem(const HidSystem&) = delete;
  HidSystem& operator=(const HidSystem&) = delete;
  virtual ~HidSystem() = default;

  // In milliseconds, without opening what another program may hold.
  virtual HidListing List() = 0;

  virtual OpenedHid Open(const std::string& device) = 0;

  // 0, or the number for the reason for which this user could not open it now.
  virtual int MayOpen(const std::string& device) = 0;

  // Such a number as a problem of the board.
  virtual Problem Explain(const std::string& device, int error) const = 0;
};

// The system that this was built for.
std::unique_ptr<HidSystem> ThisSystem();

// The problem of a board that left.
Problem BoardHasLeft();

}  // namespace quillon
