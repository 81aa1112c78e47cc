// SPDX-License-Identifier: MIT
#pragma once

#include "devlink/HidLibrary.h"
#include "sim/Bus.h"

namespace quillon::testing {

// Answers the question "does the whole program work?": the simulated boards as a HID library, in
// the test's own process, so that a test can look into a board.
class SimLibrary : public HidLibrary {
 public:
  // `bus` lives as long as the object does.
  explicit SimLibrary(sim::Bus& bus) : bus_(bus) {}

  std::int32_t DetectHID(std::uint32_t& count, std::span<DeviceRecord> free,
                         std::uint32_t type) override {
    return bus_.Detect(&count, free.data(), type);
  }
  std::int32_t WriteData(DeviceRecord& record,
                         std::span<std::uint8_t, KVUSB_PACKET_BYTES> packet) override {
    return bus_.Write(&record, packet.data());
  }
  std::int32_t ReadData(DeviceRecord& record,
                        std::span<std::uint8_t, KVUSB_PACKET_BYTES> packet) override {
    return bus_.Read(&record, packet.data());
  }
  std::int32_t CloseDevices(std::span<DeviceRecord> records) override {
    return bus_.Close(static_cast<std::uint32_t>(records.size()), records.data());
  }
  bool SetDeviceChangeHandler(DeviceChangeHandler handler, void* context) override {
    bus_.SetChangeHandler(handler, context);
    return true;
  }
  Problem DescribeProblem(const DeviceRecord* record) override {
    std::string sentence = bus_.Problem(record);
    return {sentence.empty() ? KVUSB_PROBLEM_NONE : KVUSB_PROBLEM_OTHER, std::move(sentence)};
  }

 private:
  sim::Bus& bus_;
};

}  // namespace quillon::testing
