// SPDX-License-Identifier: MIT
#include "kvusb/trace/TracePlayer.h"

#include <algorithm>
#include <cctype>
#include <cstring>
#include <limits>

namespace quillon {
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
    if (expected[i] != got[i]) out += ' ' + std::to_string(i);
  }
  return out.empty() ? out : "\n  differs in byte" + out;
}

}  // namespace

void TracePlayer::Play(std::vector<TraceEntry> entries) {
  entries_ = std::move(entries);
  next_ = 0;
}

const TraceEntry* TracePlayer::Detect(const DeviceRecord* first, std::uint32_t type) {
  if (first_ == nullptr) first_ = first;
  return Take({.call = Call::kDetect, .argument = type});
}

const TraceEntry* TracePlayer::Write(const DeviceRecord& record,
                                     std::span<const std::uint8_t, KVUSB_PACKET_BYTES> packet) {
  TraceEntry got{.call = Call::kWrite, .argument = IndexOf(record)};
  std::copy(packet.begin(), packet.end(), got.packet.begin());
  return Take(got);
}

const TraceEntry* TracePlayer::Read(const DeviceRecord& record) {
  return Take({.call = Call::kRead, .argument = IndexOf(record)});
}

const TraceEntry* TracePlayer::Close(std::uint32_t count) {
  return Take({.call = Call::kClose, .argument = count});
}

const TraceEntry* TracePlayer::Coming(std::size_t ahead) const {
  if (!difference_.empty() || ahead >= entries_.size() - next_) return nullptr;
  return &entries_[next_ + ahead];
}

void TracePlayer::ExpectNothingLeft() {
  if (const TraceEntry* expected = Coming())
    Lose(PlaceOf(*expected) + "\n  got:      nothing more");
}

const TraceEntry* TracePlayer::Take(const TraceEntry& got) {
  if (!difference_.empty()) return nullptr;
  const TraceEntry* expected = Coming();
  if (expected == nullptr) {
    Lose("The " + name_ + " has ended.\n  got:      " + Request(got));
    return nullptr;
  }
  const bool same_call = expected->call == got.call && expected->argument == got.argument;
  const bool is_write = expected->call == Call::kWrite;
  if (!same_call || (is_write && expected->packet != got.packet)) {
    Lose(PlaceOf(*expected) + "\n  got:      " + Request(got) +
         (same_call ? Differences(expected->packet, got.packet) : ""));
    return nullptr;
  }
  ++next_;
  return expected;
}

// A record of another table has no index that a trace could hold.
std::uint32_t TracePlayer::IndexOf(const DeviceRecord& record) {
  if (first_ == nullptr) first_ = &record;
  const auto distance =
      reinterpret_cast<std::uintptr_t>(&record) - reinterpret_cast<std::uintptr_t>(first_);
  const auto index = distance / sizeof record;
  constexpr std::uint32_t kNone = std::numeric_limits<std::uint32_t>::max();
  return distance % sizeof record == 0 && index < kNone ? static_cast<std::uint32_t>(index) : kNone;
}

std::string TracePlayer::PlaceOf(const TraceEntry& expected) const {
  std::string name = name_;
  name[0] = static_cast<char>(std::toupper(static_cast<unsigned char>(name[0])));
  return name + " line " + std::to_string(expected.line) + "\n  expected: " + Request(expected);
}

void CopyBoards(const TraceEntry& detection, std::span<DeviceRecord> free) {
  const std::size_t fitting = std::min(detection.boards.size(), free.size());
  for (std::size_t i = 0; i < fitting; ++i) {
    DeviceRecord record = detection.boards[i];
    record.queried_version = free[i].queried_version;
    record.firmware_present = free[i].firmware_present;
    free[i] = record;
  }
}

}  // namespace quillon
