// SPDX-License-Identifier: MIT
#pragma once

#include <cstddef>
#include <cstdint>
#include <span>
#include <string>
#include <string_view>
#include <vector>

#include "kvusb/trace/TraceText.h"

namespace quillon {

// Plays the calls of a trace: expects them in order and hands out the answer to each. A call
// differs if its kind, board, device type, count or any of a request's 65 bytes is another one. The
// first difference is kept, and no call fits after it: one call too many or too few shifts all that
// follow, so later differences say nothing.
//
// Boards are counted from the first record handed to a detection; without a detection, from the
// first record seen.
class TracePlayer {
 public:
  // `name` is what the sentences call the trace, one word.
  explicit TracePlayer(std::string name) : name_(std::move(name)) {}

  // Replaces the calls that are still expected. A difference stays.
  void Play(std::vector<TraceEntry> entries);

  // The entry of the call that was made; null if the call does not fit.
  const TraceEntry* Detect(const DeviceRecord* first, std::uint32_t type);
  const TraceEntry* Write(const DeviceRecord& record,
                          std::span<const std::uint8_t, KVUSB_PACKET_BYTES> packet);
  const TraceEntry* Read(const DeviceRecord& record);
  const TraceEntry* Close(std::uint32_t count);

  // The call that comes next or `ahead` calls later; null past the end, and after a difference.
  const TraceEntry* Coming(std::size_t ahead = 0) const;

  // The first difference as a sentence with its line, what was expected and what came; empty while
  // there is none.
  const std::string& Difference() const { return difference_; }
  // If calls are still expected, that is a difference too.
  void ExpectNothingLeft();
  // Gives the trace up for another reason.
  void Lose(std::string difference) { difference_ = std::move(difference); }

 private:
  const TraceEntry* Take(const TraceEntry& got);
  std::uint32_t IndexOf(const DeviceRecord& record);
  std::string PlaceOf(const TraceEntry& expected) const;

  std::string name_;
  std::vector<TraceEntry> entries_;
  std::size_t next_ = 0;
  std::string difference_;
  const DeviceRecord* first_ = nullptr;
};

// Copies the boards of a detection, as many as fit, without the bytes that the program fills in.
void CopyBoards(const TraceEntry& detection, std::span<DeviceRecord> free);

}  // namespace quillon
