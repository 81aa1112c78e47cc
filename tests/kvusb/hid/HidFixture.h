// SPDX-License-Identifier: MIT
#pragma once

#include <gmock/gmock.h>

#include <algorithm>
#include <filesystem>
#include <functional>
#include <memory>
#include <string>
#include <utility>
#include <vector>

#include "kernel/EmulatedKernel.h"
#include "kvusb/hid/HidBoards.h"
#include "kvusb/hid/LinuxHid.h"

namespace quillon::testing {

using Bytes = std::vector<std::uint8_t>;

inline const std::string kJoystick = R"("product": "0x0910", "firmware": "2.82")";
inline const std::string kOneBoard = "{\"id\": \"a\", " + kJoystick + "}";
inline const std::string kTwoBoards = kOneBoard + ", {\"id\": \"b\", " + kJoystick + "}";

inline const Bytes kReadHat = {0, 0, 0, 0, 0x13}, kReadAnalog = {0, 0, 0, 0, 0x11};

inline sim::Rig RigOf(const std::string& boards) {
  auto rig = sim::ParseRig(R"({"boards": [)" + boards + "]}");
  if (const auto* wrong = std::get_if<std::string>(&rig)) ADD_FAILURE() << *wrong;
  return std::holds_alternative<sim::Rig>(rig) ? std::get<sim::Rig>(std::move(rig)) : sim::Rig();
}

// How many files this process has open.
inline std::size_t OpenFiles() {
  const std::filesystem::directory_iterator files("/proc/self/fd");
  return static_cast<std::size_t>(std::distance(begin(files), end(files)));
}

// The kernel with a doorkeeper, who may refuse to open a board and say why.
class KeptDoor final : public LinuxHid {
 public:
  using Doorkeeper = std::function<int()>;

  explicit KeptDoor(Doorkeeper ask) : ask_(std::move(ask)) {}

  OpenedHid Open(const std::string& device) override {
    const int error = ask_();
    return error != 0 ? OpenedHid{nullptr, error} : LinuxHid::Open(device);
  }
  int MayOpen(const std::string& /*device*/) override { return ask_(); }

 private:
  Doorkeeper ask_;
};

// Boards on an emulated kernel, and the exchanges with them through the hidapi library.
class HidFixture {
 public:
  explicit HidFixture(const std::string& boards, HidOptions options = {},
                      std::unique_ptr<HidSystem> system = ThisSystem())
      : hid(options, std::move(system)), table(1024) {
    kernel.Add(RigOf(boards));
    Detect();
  }

  // All types in the program's order; how many boards there are.
  std::size_t Detect() {
    count = 0;
    types.clear();
    for (const std::uint32_t type : {2U, 1U, 3U}) {
      std::uint32_t found = 0;
      if (hid.DetectHID(found, std::span(table).subspan(count), type) == 0) continue;
      types.insert(types.end(), found, type);
      count += found;
    }
    return count;
  }

  std::int32_t Close() { return hid.CloseDevices(std::span(table).first(count)); }

  // Sends the bytes, zeros behind them; Read() puts the answer over them.
  std::int32_t Write(const Bytes& request, std::size_t board = 0) {
    packet = request;
    packet.resize(KVUSB_PACKET_BYTES);
    return wrote = hid.WriteData(table[board], PacketSpan(packet));
  }
  std::int32_t Read(std::size_t board = 0) {
    return read = hid.ReadData(table[board], PacketSpan(packet));
  }

  // The first `wanted` bytes of the answer; none when the write or the read failed.
  Bytes Ask(const Bytes& request, std::size_t wanted = 1, std::size_t board = 0) {
    if (Write(request, board) != KVUSB_OK || Read(board) != KVUSB_OK) return {};
    return {packet.begin(), packet.begin() + static_cast<std::ptrdiff_t>(wanted)};
  }

  EmulatedKernel kernel;
  HidBoards hid;
  std::vector<DeviceRecord> table;
  std::vector<std::uint32_t> types;
  std::size_t count = 0;
  Bytes packet;
  std::int32_t wrote = -1, read = -1;
};

}  // namespace quillon::testing
