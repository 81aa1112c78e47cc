// SPDX-License-Identifier: MIT
#pragma once

#include <cstdint>
#include <span>
#include <string>
#include <utility>

#include "devlink/HidPacket.h"
#include "devlink/Problem.h"
#include "kvusb/kvusb.h"

namespace quillon {

// A HID access library as the program sees it; kvusb.h says what each call does and returns.
// The seam behind which tests put transcripts, faults and simulated boards.
class HidLibrary {
 public:
  HidLibrary() = default;
  HidLibrary(const HidLibrary&) = delete;
  HidLibrary& operator=(const HidLibrary&) = delete;
  virtual ~HidLibrary() = default;

  // `count` is what the library reports, which may be more than `free` holds.
  virtual std::int32_t DetectHID(std::uint32_t& count, std::span<DeviceRecord> free,
                                 std::uint32_t type) = 0;
  virtual std::int32_t WriteData(DeviceRecord& record,
                                 std::span<std::uint8_t, KVUSB_PACKET_BYTES> packet) = 0;
  virtual std::int32_t ReadData(DeviceRecord& record,
                                std::span<std::uint8_t, KVUSB_PACKET_BYTES> packet) = 0;
  virtual std::int32_t CloseDevices(std::span<DeviceRecord> records) = 0;

  // The optional functions. A library without them has no events and no problems to tell.
  virtual bool SetDeviceChangeHandler(DeviceChangeHandler /*handler*/, void* /*context*/) {
    return false;
  }
  virtual Problem DescribeProblem(const DeviceRecord* /*record*/) { return {}; }
};

// Stands in where no library could be loaded: finds no board, and closes none with success.
class NoLibrary : public HidLibrary {
 public:
  // `reason` says, as a sentence, why there is no library.
  explicit NoLibrary(std::string reason = {}) : reason_(std::move(reason)) {}

  std::int32_t DetectHID(std::uint32_t& /*count*/, std::span<DeviceRecord> /*free*/,
                         std::uint32_t /*type*/) override {
    return 0;
  }
  std::int32_t WriteData(DeviceRecord& /*record*/,
                         std::span<std::uint8_t, KVUSB_PACKET_BYTES> /*packet*/) override {
    return KVUSB_WRITE_FAILED;
  }
  std::int32_t ReadData(DeviceRecord& /*record*/,
                        std::span<std::uint8_t, KVUSB_PACKET_BYTES> /*packet*/) override {
    return KVUSB_READ_FAILED;
  }
  std::int32_t CloseDevices(std::span<DeviceRecord> /*records*/) override { return 1; }
  Problem DescribeProblem(const DeviceRecord* /*record*/) override {
    return {reason_.empty() ? KVUSB_PROBLEM_NONE : KVUSB_PROBLEM_OTHER, reason_};
  }

 private:
  std::string reason_;
};

}  // namespace quillon
