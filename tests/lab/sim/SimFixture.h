// SPDX-License-Identifier: MIT
#pragma once

#include <gtest/gtest.h>

#include <algorithm>
#include <cstdint>
#include <string>
#include <utility>
#include <vector>

#include "sim/Bus.h"

namespace quillon::sim {

using Bytes = std::vector<std::uint8_t>;

inline Rig RigOf(const std::string& boards) {
  auto rig = ParseRig(R"({"boards": [)" + boards + "]}");
  if (const auto* wrong = std::get_if<std::string>(&rig)) ADD_FAILURE() << *wrong;
  return std::holds_alternative<Rig>(rig) ? std::get<Rig>(std::move(rig)) : Rig();
}

// A clock that only a wait moves.
struct OwnTime {
  std::chrono::microseconds now{0};

  BusOptions Options() {
    BusOptions options;
    options.now = [this] { return now; };
    options.sleep = [this](std::chrono::microseconds duration) { now += duration; };
    return options;
  }
};

// A bus with one board, "b", and the exchanges with it.
class SimFixture {
 public:
  // `fields` are the board's keys without its id.
  explicit SimFixture(const std::string& fields, BusOptions options = {.latency = {}})
      : bus(RigOf(R"({"id": "b", )" + fields + "}"), std::move(options)) {
    Detect();
  }

  // Looks for the board in all types; 0 when it is not there.
  std::uint32_t Detect() {
    for (std::uint32_t type = 1; type <= 3; ++type) {
      std::uint32_t count = 0;
      if (bus.DetectHID(count, {&record, 1}, type) != 0 && count == 1) return type;
    }
    return 0;
  }

  // Sends the bytes, zeros behind them, and gives the first `wanted` bytes of the answer; none when
  // the write or the read failed.
  Bytes Ask(Bytes packet, std::size_t wanted = 1) {
    packet.resize(KVUSB_PACKET_BYTES);
    wrote = bus.WriteData(record, PacketSpan(packet));
    read = bus.ReadData(record, PacketSpan(packet));
    if (wrote != 0 || read != 0) return {};
    packet.resize(wanted);
    return packet;
  }

  Board& TheBoard() { return *bus.Find("b"); }

  Bus bus;
  DeviceRecord record{};
  std::int32_t wrote = -1, read = -1;
};

inline Bytes Joined(Bytes head, const Bytes& tail) {
  head.insert(head.end(), tail.begin(), tail.end());
  return head;
}

inline const std::string kJoystickBoard = R"("product": "0x0910", "firmware": "2.82")";

}  // namespace quillon::sim
