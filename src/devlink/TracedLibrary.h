// SPDX-License-Identifier: MIT
#pragma once

#include <functional>
#include <optional>
#include <string>
#include <string_view>

#include "kvusb/ForwardingLibrary.h"

namespace quillon {

// Writes every call to another library, with its time and result, in the form that
// kvusb/trace/TraceText.h describes. Each call is written at once, so that a trace is complete up
// to the call that went wrong. When writing fails, the trace stops; the calls go on, and
// DescribeProblem(nullptr) tells of it.
class TracedLibrary : public ForwardingLibrary {
 public:
  // Seconds since some moment; never goes back.
  using Clock = std::function<double()>;

  // Writes a piece of the trace, or returns a sentence that says why it cannot.
  using Write = std::function<std::optional<std::string>(std::string_view)>;

  TracedLibrary(HidLibrary& inner, Write write, Clock clock);

  // Called once, inside a call of the library, when the trace stops.
  void SetWhenStopped(std::function<void()> when_stopped) {
    when_stopped_ = std::move(when_stopped);
  }

  std::int32_t DetectHID(std::uint32_t& count, std::span<DeviceRecord> free,
                         std::uint32_t type) override;
  std::int32_t WriteData(DeviceRecord& record, PacketSpan packet) override;
  std::int32_t ReadData(DeviceRecord& record, PacketSpan packet) override;
  std::int32_t CloseDevices(std::span<DeviceRecord> records) override;
  Problem DescribeProblem(const DeviceRecord* record) override;

 private:
  void Put(std::string_view text);
  std::uint32_t IndexOf(const DeviceRecord& record) const;
  double Now() const { return clock_() - begin_; }

  Write write_;
  std::optional<std::string> stopped_;  // why
  std::function<void()> when_stopped_;
  Clock clock_;
  double begin_;
  const DeviceRecord* first_ = nullptr;
};

}  // namespace quillon
