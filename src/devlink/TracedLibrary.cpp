// SPDX-License-Identifier: MIT
#include "devlink/TracedLibrary.h"

#include <algorithm>

#include "kvusb/trace/TraceText.h"

namespace quillon {
namespace {

using Call = TraceEntry::Call;

}  // namespace

TracedLibrary::TracedLibrary(HidLibrary& inner, std::ostream& out, Clock clock)
    : inner_(inner), out_(out), clock_(std::move(clock)), begin_(clock_()) {
  out_ << kTraceHeading << std::flush;
}

std::int32_t TracedLibrary::DetectHID(std::uint32_t& count, std::span<DeviceRecord> free,
                                      std::uint32_t type) {
  if (first_ == nullptr) first_ = free.data();
  TraceEntry entry{.call = Call::kDetect, .seconds = Now(), .argument = type};
  entry.result = inner_.DetectHID(count, free, type);
  if (entry.result != 0) {
    const auto listed = free.first(std::min<std::size_t>(count, free.size()));
    entry.boards.assign(listed.begin(), listed.end());
  }
  out_ << FormatTraceEntry(entry) << std::flush;
  return entry.result;
}

std::int32_t TracedLibrary::WriteData(DeviceRecord& record,
                                      std::span<std::uint8_t, KVUSB_PACKET_BYTES> packet) {
  TraceEntry entry{.call = Call::kWrite, .seconds = Now(), .argument = IndexOf(record)};
  std::copy(packet.begin(), packet.end(), entry.packet.begin());
  entry.result = inner_.WriteData(record, packet);
  out_ << FormatTraceEntry(entry) << std::flush;
  return entry.result;
}

std::int32_t TracedLibrary::ReadData(DeviceRecord& record,
                                     std::span<std::uint8_t, KVUSB_PACKET_BYTES> packet) {
  TraceEntry entry{.call = Call::kRead, .argument = IndexOf(record)};
  entry.result = inner_.ReadData(record, packet);
  entry.seconds = Now();
  std::copy(packet.begin(), packet.end(), entry.packet.begin());
  out_ << FormatTraceEntry(entry) << std::flush;
  return entry.result;
}

std::int32_t TracedLibrary::CloseDevices(std::span<DeviceRecord> records) {
  TraceEntry entry{.call = Call::kClose,
                   .seconds = Now(),
                   .argument = static_cast<std::uint32_t>(records.size())};
  entry.result = inner_.CloseDevices(records);
  out_ << FormatTraceEntry(entry) << std::flush;
  return entry.result;
}

bool TracedLibrary::SetDeviceChangeHandler(DeviceChangeHandler handler, void* context) {
  return inner_.SetDeviceChangeHandler(handler, context);
}

Problem TracedLibrary::DescribeProblem(const DeviceRecord* record) {
  return inner_.DescribeProblem(record);
}

std::uint32_t TracedLibrary::IndexOf(const DeviceRecord& record) const {
  return first_ == nullptr ? 0 : static_cast<std::uint32_t>(&record - first_);
}

}  // namespace quillon
