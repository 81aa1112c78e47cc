// SPDX-License-Identifier: MIT
#pragma once

#include <chrono>
#include <cstdint>
#include <map>
#include <memory>

#include "kvusb/HidLibrary.h"
#include "kvusb/hid/HidSystem.h"

namespace quillon {

struct HidOptions {
  std::chrono::milliseconds answer_limit{2000};
  std::chrono::milliseconds erase_limit{10000};
};

// The boards on the machine's USB.
//
// Detection only reads the system's list, and a board is opened for its first exchange. A board
// that may not be opened is listed all the same, and DescribeProblem() says why it does not work. A
// record is recognised by a mark and a number in library_a; the number is the board's from its
// first detection until it is closed, so a record from before is dead.
class HidBoards final : public HidLibrary {
 public:
  explicit HidBoards(HidOptions options = {}, std::unique_ptr<HidSystem> system = ThisSystem());
  ~HidBoards() override;

  std::int32_t DetectHID(std::uint32_t& count, std::span<DeviceRecord> free,
                         std::uint32_t type) override;
  std::int32_t WriteData(DeviceRecord& record, PacketSpan packet) override;
  std::int32_t ReadData(DeviceRecord& record, PacketSpan packet) override;
  std::int32_t CloseDevices(std::span<DeviceRecord> records) override;
  Problem DescribeProblem(const DeviceRecord* record) override;

 private:
  struct Port;

  Port* PortOf(const DeviceRecord& record) const;
  Port& PortFor(const HidNode& node);
  void Fill(DeviceRecord& record, const HidNode& node, const Port& port) const;
  void CloseMissing();
  bool Open(Port& port);

  HidOptions options_;
  std::unique_ptr<HidSystem> system_;
  HidListing listing_;  // the last one
  std::map<std::uint32_t, std::unique_ptr<Port>> ports_;
  std::uint32_t next_number_ = 1;
};

}  // namespace quillon
