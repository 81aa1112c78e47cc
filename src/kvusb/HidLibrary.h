// SPDX-License-Identifier: MIT
#pragma once

#include <cstdint>
#include <span>

#include "kvusb/HidPacket.h"
#include "kvusb/Problem.h"
#include "kvusb/kvusb.h"

namespace quillon {

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

  // The optional functions. A library without them has no events and no problems to tell.
  virtual bool SetDeviceChangeHandler(DeviceChangeHandler /*handler*/, void* /*context*/) {
    return false;
  }
  virtual Problem DescribeProblem(const DeviceRecord* /*record*/) { return {}; }
};

}  // namespace quillon
