// SPDX-License-Identifier: MIT
#include "testing/link/TranscriptLibrary.h"

#include <gmock/gmock.h>

#include <algorithm>

namespace quillon::testing {
namespace {

using Call = TraceEntry::Call;

// A call without its time and result: the part in which two calls can differ.
std::string Request(const TraceEntry& entry) {
  const std::string line = FormatTraceEntry(entry);
  const auto begin = line.find(' ') + 1;
  std::string out = line.substr(begin, line.find(" ->") - begin);
  if (entry.call == Call::kWrite) {
    const auto bytes = line.find(" : ");
    out += line.substr(bytes, line.size() - 1 - bytes);
  }
  return out;
}

std::string Differences(const TracePacket& expected, const TracePacket& got) {
  std::string out;
  for (std::size_t i = 0; i < expected.size(); ++i) {
    if (expected[i] != got[i]) out += " " + std::to_string(i);
  }
  return out.empty() ? out : "\n  differs in byte" + out;
}

}  // namespace

TranscriptLibrary::TranscriptLibrary(std::string_view transcript, std::source_location where)
    : where_(where) {
  Expect(transcript, where);
}

TranscriptLibrary::~TranscriptLibrary() { CheckAllCame(); }

void TranscriptLibrary::Expect(std::string_view transcript, std::source_location where) {
  CheckAllCame();
  where_ = where;
  next_ = 0;
  entries_.clear();
  auto parsed = ParseTrace(transcript);
  if (const auto* error = std::get_if<std::string>(&parsed)) {
    Fail("The transcript cannot be read. " + *error);
  } else {
    entries_ = std::get<std::vector<TraceEntry>>(std::move(parsed));
  }
}

std::int32_t TranscriptLibrary::DetectHID(std::uint32_t& count, std::span<DeviceRecord> free,
                                          std::uint32_t type) {
  if (first_ == nullptr) first_ = free.data();
  const TraceEntry* entry = Next({.call = Call::kDetect, .argument = type});
  if (entry == nullptr) return 0;
  if (entry->result == 0) return 0;
  count = static_cast<std::uint32_t>(entry->boards.size());
  std::copy_n(entry->boards.begin(), std::min(entry->boards.size(), free.size()), free.begin());
  return entry->result;
}

std::int32_t TranscriptLibrary::WriteData(DeviceRecord& record,
                                          std::span<std::uint8_t, KVUSB_PACKET_BYTES> packet) {
  TraceEntry got{.call = Call::kWrite, .argument = IndexOf(record)};
  std::copy(packet.begin(), packet.end(), got.packet.begin());
  const TraceEntry* entry = Next(got);
  return entry == nullptr ? std::int32_t{KVUSB_WRITE_FAILED} : entry->result;
}

std::int32_t TranscriptLibrary::ReadData(DeviceRecord& record,
                                         std::span<std::uint8_t, KVUSB_PACKET_BYTES> packet) {
  const TraceEntry* entry = Next({.call = Call::kRead, .argument = IndexOf(record)});
  if (entry == nullptr) return KVUSB_READ_FAILED;
  if (entry->HasPacket()) std::copy(entry->packet.begin(), entry->packet.end(), packet.begin());
  return entry->result;
}

std::int32_t TranscriptLibrary::CloseDevices(std::span<DeviceRecord> records) {
  const TraceEntry* entry =
      Next({.call = Call::kClose, .argument = static_cast<std::uint32_t>(records.size())});
  return entry == nullptr ? 0 : entry->result;
}

const TraceEntry* TranscriptLibrary::Next(const TraceEntry& got) {
  if (lost_) return nullptr;
  if (next_ == entries_.size()) {
    Fail("The transcript has ended.\n  got:      " + Request(got));
    return nullptr;
  }
  const TraceEntry& expected = entries_[next_];
  const bool same_call = expected.call == got.call && expected.argument == got.argument;
  const bool is_write = expected.call == Call::kWrite;
  if (!same_call || (is_write && expected.packet != got.packet)) {
    Fail("Transcript line " + std::to_string(expected.line) + "\n  expected: " + Request(expected) +
         "\n  got:      " + Request(got) +
         (same_call ? Differences(expected.packet, got.packet) : ""));
    return nullptr;
  }
  ++next_;
  return &expected;
}

void TranscriptLibrary::CheckAllCame() {
  if (lost_ || next_ == entries_.size()) return;
  const TraceEntry& expected = entries_[next_];
  Fail("Transcript line " + std::to_string(expected.line) + "\n  expected: " + Request(expected) +
       "\n  got:      nothing more");
}

void TranscriptLibrary::Fail(const std::string& message) {
  lost_ = true;
  ADD_FAILURE_AT(where_.file_name(), static_cast<int>(where_.line())) << message;
}

std::uint32_t TranscriptLibrary::IndexOf(const DeviceRecord& record) {
  if (first_ == nullptr) first_ = &record;
  return static_cast<std::uint32_t>(&record - first_);
}

}  // namespace quillon::testing
