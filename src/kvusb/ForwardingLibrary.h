// SPDX-License-Identifier: MIT
#pragma once

#include "kvusb/HidLibrary.h"

namespace quillon {

// Hands every call on to another library. Whoever stands between the program and a library derives
// from it and overrides only what it changes. An exchange is its two calls here, for whoever
// changes one of them.
class ForwardingLibrary : public HidLibrary {
 public:
  // `inner` lives as long as the object does.
  explicit ForwardingLibrary(HidLibrary& inner) : inner_(inner) {}

  std::int32_t DetectHID(std::uint32_t& count, std::span<DeviceRecord> free,
                         std::uint32_t type) override {
    return inner_.DetectHID(count, free, type);
  }
  std::int32_t WriteData(DeviceRecord& record, PacketSpan packet) override {
    return inner_.WriteData(record, packet);
  }
  std::int32_t ReadData(DeviceRecord& record, PacketSpan packet) override {
    return inner_.ReadData(record, packet);
  }
  std::int32_t CloseDevices(std::span<DeviceRecord> records) override {
    return inner_.CloseDevices(records);
  }
  bool SetDeviceChangeHandler(DeviceChangeHandler handler, void* context) override {
    return inner_.SetDeviceChangeHandler(handler, context);
  }
  Problem DescribeProblem(const DeviceRecord* record) override {
    return inner_.DescribeProblem(record);
  }

 protected:
  HidLibrary& Inner() { return inner_; }

 private:
  HidLibrary& inner_;
};

}  // namespace quillon
