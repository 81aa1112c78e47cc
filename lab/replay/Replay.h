// SPDX-License-Identifier: MIT
#pragma once

#include <cstddef>
#include <cstdint>
#include <filesystem>
#include <string>

#include "kvusb/HidLibrary.h"
#include "kvusb/trace/TracePlayer.h"

namespace quillon {

// A session recorded with QUILLON_TRACE. After the first call that differs from the session, every
// call fails, but for closing: there is nothing left to close.
//
// A trace has no events, but it has what the program did at one: it closed its boards and looked
// for them again. When that comes next, an arrival is reported from inside the call before, so that
// the program does again what it did then.
class Replay final : public HidLibrary {
 public:
  explicit Replay(const std::filesystem::path& trace);

  std::int32_t DetectHID(std::uint32_t& count, std::span<DeviceRecord> free,
                         std::uint32_t type) override;
  std::int32_t WriteData(DeviceRecord& record, PacketSpan packet) override;
  std::int32_t ReadData(DeviceRecord& record, PacketSpan packet) override;
  std::int32_t CloseDevices(std::span<DeviceRecord> records) override;
  bool SetDeviceChangeHandler(DeviceChangeHandler handler, void* context) override;

  // Why nothing can be played, where the program left the trace, or that the trace has ended, in
  // one line. A trace knows nothing of problems of single boards.
  Problem DescribeProblem(const DeviceRecord* record) override;

 private:
  std::string Sentence() const;
  // A call was answered.
  void Advance();
  void ReportRedetection();

  std::string file_;
  std::string unplayable_;
  std::size_t calls_ = 0;
  TracePlayer player_{"trace"};
  bool redetection_due_ = false;
  DeviceChangeHandler handler_ = nullptr;
  void* context_ = nullptr;
};

}  // namespace quillon
