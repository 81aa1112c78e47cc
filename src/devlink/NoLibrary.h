// SPDX-License-Identifier: MIT
#pragma once

#include <string>
#include <utility>

#include "kvusb/HidLibrary.h"

namespace quillon {

// Stands in where no library could be loaded: finds no board, and closes none with success.
class NoLibrary : public HidLibrary {
 public:
  // `reason` says, as a sentence, why there is no library.
  explicit NoLibrary(std::string reason = {}) : reason_(std::move(reason)) {}

  std::int32_t DetectHID(std::uint32_t& /*count*/, std::span<DeviceRecord> /*free*/,
                         std::uint32_t /*type*/) override {
    return 0;
  }
  std::int32_t WriteData(DeviceRecord& /*record*/, PacketSpan /*packet*/) override {
    return KVUSB_WRITE_FAILED;
  }
  std::int32_t ReadData(DeviceRecord& /*record*/, PacketSpan /*packet*/) override {
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
