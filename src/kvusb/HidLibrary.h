// SPDX-License-Identifier: MIT
#pragma once

#include <cstdint>
#include <span>

#include "kvusb/HidPacket.h"
#include "kvusb/Problem.h"
#include "kvusb/kvusb.h"

namespace quillon {

// When an exchange goes on to read: always, or only if the write did not fail.
enum class ReadAfter : std::uint32_t { kAnyWrite, kGoodWrite };

// The functions of kvusb.h, which says what each of them does and returns, as a class. The program
// calls a library as one (LoadedLibrary.h), our own libraries are written as one (Exports.h), and
// behind it tests put transcripts, faults and simulated boards.
//
// Nothing here is null, but for the record of DescribeProblem(). A library of ours may throw: the
// exports make a failure of that.
class HidLibrary {
 public:
  HidLibrary() = default;
  HidLibrary(const HidLibrary&) = delete;
  HidLibrary& operator=(const HidLibrary&) = delete;
  virtual ~HidLibrary() = default;

  // `count` is what the library reports. A loaded one may report more than `free` holds, ours stop
  // there.
  virtual std::int32_t DetectHID(std::uint32_t& count, std::span<DeviceRecord> free,
                                 std::uint32_t type) = 0;
  virtual std::int32_t WriteData(DeviceRecord& record, PacketSpan packet) = 0;
  virtual std::int32_t ReadData(DeviceRecord& record, PacketSpan packet) = 0;
  virtual std::int32_t CloseDevices(std::span<DeviceRecord> records) = 0;

  // WriteData and the ReadData that follows it; returns what that returns, or KVUSB_READ_FAILED
  // where it does not come to that. Only a library that is far away does this in its own way.
  virtual std::int32_t Exchange(DeviceRecord& record, PacketSpan packet, ReadAfter after) {
    const std::int32_t written = WriteData(record, packet);
    if (after == ReadAfter::kGoodWrite && written == KVUSB_WRITE_FAILED) return KVUSB_READ_FAILED;
    return ReadData(record, packet);
  }

  // The optional functions. A library without them has no events and no problems to tell.
  virtual bool SetDeviceChangeHandler(DeviceChangeHandler /*handler*/, void* /*context*/) {
    return false;
  }
  virtual Problem DescribeProblem(const DeviceRecord* /*record*/) { return {}; }
};

}  // namespace quillon
