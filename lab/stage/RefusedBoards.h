// SPDX-License-Identifier: MIT
#pragma once

#include <map>
#include <utility>

#include "kvusb/ForwardingLibrary.h"

namespace quillon::stage {

// What keeps boards from working, by their product id.
using Refusals = std::map<std::uint16_t, Problem>;

// The boards of a library, some of which the system refuses to open: they are listed and answer
// nothing. Simulated boards have no system that could refuse them.
class RefusedBoards : public ForwardingLibrary {
 public:
  RefusedBoards(HidLibrary& inner, Refusals refusals)
      : ForwardingLibrary(inner), refusals_(std::move(refusals)) {}

  std::int32_t WriteData(DeviceRecord& record, PacketSpan packet) override {
    return refusals_.contains(record.product_id) ? KVUSB_WRITE_FAILED
                                                 : Inner().WriteData(record, packet);
  }
  std::int32_t ReadData(DeviceRecord& record, PacketSpan packet) override {
    return refusals_.contains(record.product_id) ? KVUSB_READ_FAILED
                                                 : Inner().ReadData(record, packet);
  }
  Problem DescribeProblem(const DeviceRecord* record) override {
    const auto refused = record == nullptr ? refusals_.end() : refusals_.find(record->product_id);
    return refused == refusals_.end() ? Inner().DescribeProblem(record) : refused->second;
  }

 private:
  Refusals refusals_;
};

}  // namespace quillon::stage
