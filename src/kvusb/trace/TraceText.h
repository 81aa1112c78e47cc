// SPDX-License-Identifier: MIT
#pragma once

#include <array>
#include <cstdint>
#include <string>
#include <string_view>
#include <variant>
#include <vector>

#include "kvusb/kvusb.h"

// The text form of calls to a HID library: what QUILLON_TRACE writes and what the strict
// transcripts of the tests are. One line a call, in order:
//
//   quillon trace 1
//   0.000412 close 0 -> 1
//   0.501018 detect 2 -> 1 boards 1
//   board pid 0910 version 0282 product "Joystick Controller" maker "Quillon Devices" serial "001"
//   4.180733 write 0 -> 0 : 00 00 00 00 11 *
//   4.182841 read 0 -> 0 : 11 01 02 *
//
// A line begins with the seconds since the trace began; they are for the human reader and may be
// left out. The number after the call's name is the device type (detect), the board's index in the
// table (write, read) or the count (close); the result stands after the arrow. After `boards N`
// come N board lines. Packets are hexadecimal bytes, 65 of them; `*` stands for zeros to the end. A
// read that failed carries no bytes. In quoted texts a byte that is not printable ASCII, a quote or
// a backslash is written \xNN. Empty lines and lines that begin with # are skipped.
namespace quillon {

using TracePacket = std::array<std::uint8_t, KVUSB_PACKET_BYTES>;

struct TraceEntry {
  enum class Call { kDetect, kWrite, kRead, kClose };
  Call call = Call::kDetect;
  double seconds = 0;
  std::uint32_t argument = 0;
  std::int32_t result = 0;
  TracePacket packet{};
  std::vector<DeviceRecord> boards{};
  int line = 0;  // where ParseTrace() found the call, counted from 1

  // Whether the call has bytes: a write has, and a read that did not fail.
  bool HasPacket() const;
};

inline constexpr std::string_view kTraceHeading = "quillon trace 1\n";

// One call as one line (a detection as several), with the line ends.
std::string FormatTraceEntry(const TraceEntry& entry);

// All calls of a trace, or a sentence that names the line that cannot be read. The heading may be
// missing, so that tests can write transcripts without it.
std::variant<std::vector<TraceEntry>, std::string> ParseTrace(std::string_view text);

}  // namespace quillon
