// SPDX-License-Identifier: MIT
#pragma once

#include <map>
#include <utility>

#include "kvusb/HidLibrary.h"

namespace quillon::stage {

// What keeps boards from working, by their product id.
using Refusals = std::map<std::uint16_t, Problem>;

// The boards of a library, some of which the system refuses to open: they are listed and answer
// nothing. Simulated boards have no system that could refuse them.
class RefusedBoards : public HidLibrary {
 public:
  // `library` outlives the object.
  RefusedBoards(HidLibrary& library, Refusals refusals)
      : library_(library), refusals_(std::move(refusals)) {}

  std::int32_t DetectHID(std::uint32_t& count, std::span<DeviceRecord> free,
                         std::uint32_t type) override {
    return library_.DetectHID(count, free, type);
  }
  std::int32_t WriteData(DeviceRecord& record, PacketSpan packet) override {
    return refusals_.contains(record.product_id) ? KVUSB_WRITE_FAILED
                                                 : library_.WriteData(record, packet);
  }
  std::int32_t ReadData(DeviceRecord& record, PacketSpan packet) override {
    return refusals_.contains(record.product_id) ? KVUSB_READ_FAILED
                                                 : library_.ReadData(record, packet);
  }
  std::int32_t CloseDevices(std::span<DeviceRecord> records) override {
    return library_.CloseDevices(records);
  }
  bool SetDeviceChangeHandler(DeviceChangeHandler handler, void* context) override {
    return library_.SetDeviceChangeHandler(handler, context);
  }
  Problem DescribeProblem(const DeviceRecord* record) override {
    const auto refused = record == nullptr ? refusals_.end() : refusals_.find(record->product_id);
    return refused == refusals_.end() ? library_.DescribeProblem(record) : refused->second;
  }

 private:
  HidLibrary& library_;
  Refusals refusals_;
};

}  // namespace quillon::stage
