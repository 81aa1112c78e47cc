// SPDX-License-Identifier: MIT
#pragma once

#include <source_location>
#include <string_view>

#include "kvusb/HidLibrary.h"
#include "kvusb/trace/TracePlayer.h"

namespace quillon::testing {

// Answers the question "what exactly does the program send?": a HID library that expects the calls
// of a transcript, in order, and answers as it says. The text is the one of
// kvusb/trace/TraceText.h:
//
//   TranscriptLibrary library(R"(
//     write 0 -> 0 : 00 3f 08 47 11 *
//     read 0 -> 0 : 11 01 02 *)");
//
// A call that differs in its kind, board, device type, count or any of a request's 65 bytes is a
// failure of the test, and so is one past the end or one that never comes. Boards are counted from
// the first record handed to a detection; without a detection, from the first record seen.
class TranscriptLibrary : public HidLibrary {
 public:
  explicit TranscriptLibrary(std::string_view transcript,
                             std::source_location where = std::source_location::current());
  // Fails the test for calls that did not come.
  ~TranscriptLibrary() override;

  // The next part of a transcript: all calls of the former parts must have come by now. A failure
  // names the line within the part and points at the place of this call.
  void Expect(std::string_view transcript,
              std::source_location where = std::source_location::current());

  std::int32_t DetectHID(std::uint32_t& count, std::span<DeviceRecord> free,
                         std::uint32_t type) override;
  std::int32_t WriteData(DeviceRecord& record, PacketSpan packet) override;
  std::int32_t ReadData(DeviceRecord& record, PacketSpan packet) override;
  std::int32_t CloseDevices(std::span<DeviceRecord> records) override;

 private:
  // What the program did, passed on; the first difference fails the test.
  const TraceEntry* Judged(const TraceEntry* entry);

  std::source_location where_;
  TracePlayer player_{"transcript"};
  bool failed_ = false;
};

}  // namespace quillon::testing
