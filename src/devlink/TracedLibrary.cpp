// SPDX-License-Identifier: MIT
#include "devlink/TracedLibrary.h"

#include <algorithm>

#include "kvusb/trace/TraceText.h"

namespace quillon {
namespace {

using Call = TraceEntry::Call;

}  // namespace

TracedLibrary::TracedLibrary(HidLibrary& inner, Write write, Clock clock)
    : ForwardingLibrary(inner),
      write_(std::move(write)),
      clock_(std::move(clock)),
      begin_(clock_()) {
  Put(kTraceHeading);
}

std::int32_t TracedLibrary::DetectHID(std::uint32_t& count, std::span<DeviceRecord> free,
                                      std::uint32_t type) {
  if (first_ == nullptr) first_ = free.data();
  TraceEntry entry{.call = Call::kDetect, .seconds = Now(), .argument = type};
  entry.result = Inner().DetectHID(count, free, type);
  if (entry.result != 0) {
    const auto listed = free.first(std::min<std::size_t>(count, free.size()));
    entry.boards.assign(listed.begin(), listed.end());
  }
  Put(FormatTraceEntry(entry));
  return entry.result;
}

std::int32_t TracedLibrary::WriteData(DeviceRecord& record, PacketSpan packet) {
  TraceEntry entry{.call = Call::kWrite, .seconds = Now(), .argument = IndexOf(record)};
  std::copy(packet.begin(), packet.end(), entry.packet.begin());
  entry.result = Inner().WriteData(record, packet);
  Put(FormatTraceEntry(entry));
  return entry.result;
}

std::int32_t TracedLibrary::ReadData(DeviceRecord& record, PacketSpan packet) {
  TraceEntry entry{.call = Call::kRead, .argument = IndexOf(record)};
  entry.result = Inner().ReadData(record, packet);
  entry.seconds = Now();
  std::copy(packet.begin(), packet.end(), entry.packet.begin());
  Put(FormatTraceEntry(entry));
  return entry.result;
}

std::int32_t TracedLibrary::CloseDevices(std::span<DeviceRecord> records) {
  TraceEntry entry{.call = Call::kClose,
                   .seconds = Now(),
                   .argument = static_cast<std::uint32_t>(records.size())};
  entry.result = Inner().CloseDevices(records);
  Put(FormatTraceEntry(entry));
  return entry.result;
}

Problem TracedLibrary::DescribeProblem(const DeviceRecord* record) {
  Problem problem = Inner().DescribeProblem(record);
  if (record != nullptr || !stopped_) return problem;
  if (problem.kind == KVUSB_PROBLEM_NONE) problem = {KVUSB_PROBLEM_OTHER, {}};
  if (!problem.sentence.empty()) problem.sentence += ' ';
  problem.sentence += "The trace has stopped. " + *stopped_;
  return problem;
}

void TracedLibrary::Put(std::string_view text) {
  if (stopped_) return;
  stopped_ = write_(text);
  if (stopped_ && when_stopped_) when_stopped_();
}

std::uint32_t TracedLibrary::IndexOf(const DeviceRecord& record) const {
  return first_ == nullptr ? 0 : static_cast<std::uint32_t>(&record - first_);
}

}  // namespace quillon
