// SPDX-License-Identifier: MIT
#pragma once

#include <chrono>
#include <cstdint>
#include <filesystem>
#include <functional>
#include <memory>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

#include "boards/Board.h"
#include "boards/Faults.h"
#include "boards/Rig.h"
#include "kvusb/HidLibrary.h"

namespace quillon::sim {

struct BusOptions {
  // Where the boards keep their state; without it they forget all when the bus goes.
  std::optional<std::filesystem::path> state_folder = std::nullopt;
  // How long one exchange takes; half of it is for the write. With 0 nothing takes time: neither a
  // stalled answer, nor an erase, nor a restart.
  std::chrono::microseconds latency{2000};
  // The clock and the wait. Tests give their own; without them the machine's.
  std::function<std::chrono::microseconds()> now = {};
  std::function<void(std::chrono::microseconds)> sleep = {};
  // What else keeps the bus from working, as a sentence that DescribeProblem(nullptr) tells.
  std::string problem = {};
};

// The simulated boards as a HID library.
//
// A record is recognised by a mark, the board's id and a number in library_a; the number changes
// when the board is closed, unplugged or restarted, so a record from before is dead.
//
// A board that is told to restart leaves the bus and comes back when its answer has been read. Both
// events are sent at once; for `reboot_ms` after that the board is not detected and does not
// answer.
class Bus final : public HidLibrary {
 public:
  explicit Bus(Rig rig, BusOptions options = {});
  ~Bus() override;

  std::int32_t DetectHID(std::uint32_t& count, std::span<DeviceRecord> free,
                         std::uint32_t type) override;
  std::int32_t WriteData(DeviceRecord& record, PacketSpan packet) override;
  std::int32_t ReadData(DeviceRecord& record, PacketSpan packet) override;
  std::int32_t CloseDevices(std::span<DeviceRecord> records) override;
  bool SetDeviceChangeHandler(DeviceChangeHandler handler, void* context) override;
  Problem DescribeProblem(const DeviceRecord* record) override;

  // For tests. With an id that no board has, Find() returns null and the others do nothing.
  Board* Find(std::string_view id);
  void Plug(std::string_view id);
  void Unplug(std::string_view id);
  void ProvokeFault(std::string_view id, const Fault& fault);

 private:
  struct Slot;

  Slot* SlotOf(std::string_view id) const;
  Slot* LiveSlot(const DeviceRecord& record) const;
  bool IsPresent(const Slot& slot) const;
  void TakeIn(BoardSpec spec);
  void Fill(DeviceRecord& record, const Slot& slot) const;
  void Wait(std::chrono::microseconds duration) const;
  void Restart(Slot& slot);
  void FinishRestarts();
  void Announce(std::uint32_t event, const Slot& slot) const;

  BusOptions options_;
  std::vector<std::unique_ptr<Slot>> slots_;
  DeviceChangeHandler handler_ = nullptr;
  void* context_ = nullptr;
};

}  // namespace quillon::sim
