// SPDX-License-Identifier: MIT
#pragma once

#include <functional>
#include <memory>
#include <ostream>

#include "devlink/HidLibrary.h"

namespace quillon {

// Writes every call to another library, with its time and result, as kvusb/trace/TraceText.h says.
// Each call is flushed, so that a trace is whole up to the very call that went wrong.
class TracedLibrary : public HidLibrary {
 public:
  // Seconds since some moment, never running backwards.
  using Clock = std::function<double()>;

  // `out` and `inner` live as long as the object does.
  TracedLibrary(HidLibrary& inner, std::ostream& out, Clock clock);

  std::int32_t DetectHID(std::uint32_t& count, std::span<DeviceRecord> free,
                         std::uint32_t type) override;
  std::int32_t WriteData(DeviceRecord& record,
                         std::span<std::uint8_t, KVUSB_PACKET_BYTES> packet) override;
  std::int32_t ReadData(DeviceRecord& record,
                        std::span<std::uint8_t, KVUSB_PACKET_BYTES> packet) override;
  std::int32_t CloseDevices(std::span<DeviceRecord> records) override;
  bool SetDeviceChangeHandler(DeviceChangeHandler handler, void* context) override;
  Problem DescribeProblem(const DeviceRecord* record) override;

 private:
  std::uint32_t IndexOf(const DeviceRecord& record) const;
  double Now() const { return clock_() - begin_; }

  HidLibrary& inner_;
  std::ostream& out_;
  Clock clock_;
  double begin_;
  const DeviceRecord* first_ = nullptr;
};

}  // namespace quillon
