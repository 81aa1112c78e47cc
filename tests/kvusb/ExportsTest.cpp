// SPDX-License-Identifier: MIT
#include <gtest/gtest.h>

#include <stdexcept>
#include <vector>

#include "kvusb/Exports.h"

extern "C" {
std::int32_t KVUSB_CALL DetectHID(std::uint32_t* count, DeviceRecord* first, std::uint32_t type);
std::int32_t KVUSB_CALL WriteData(DeviceRecord* record, std::uint8_t* packet);
std::int32_t KVUSB_CALL ReadData(DeviceRecord* record, std::uint8_t* packet);
std::int32_t KVUSB_CALL CloseDevices(std::uint32_t count, DeviceRecord* first);
std::int32_t KVUSB_CALL SetDeviceChangeHandler(DeviceChangeHandler handler, void* context);
std::int32_t KVUSB_CALL DescribeProblem(const DeviceRecord*, char*, std::uint32_t size);
}

namespace quillon {
namespace {

// Succeeds in all it is asked for, with results of its own.
class PlainLibrary : public HidLibrary {
 public:
  std::int32_t DetectHID(std::uint32_t& count, std::span<DeviceRecord> free,
                         std::uint32_t type) override {
    seen.push_back(static_cast<int>(free.size()));
    count = type;
    return 21;
  }
  std::int32_t WriteData(DeviceRecord& /*record*/, PacketSpan packet) override {
    seen.push_back(packet[kCommandByte]);
    return 22;
  }
  std::int32_t ReadData(DeviceRecord& /*record*/, PacketSpan packet) override {
    packet[kEchoByte] = 0x77;
    seen.push_back(packet[kCommandByte]);
    return 23;
  }
  std::int32_t CloseDevices(std::span<DeviceRecord> records) override {
    seen.push_back(static_cast<int>(records.size()));
    return 24;
  }
  bool SetDeviceChangeHandler(DeviceChangeHandler handler, void* /*context*/) override {
    return handler == nullptr;
  }
  Problem DescribeProblem(const DeviceRecord* record) override {
    return {record == nullptr ? 26 : 27, "No board answers."};
  }

  std::vector<int> seen;  // commands and numbers of records
};

PlainLibrary* made = nullptr;

}  // namespace

HidLibrary& TheLibrary() {
  if (made == nullptr) throw std::runtime_error("no bus");
  return *made;
}

namespace {

TEST(Exports, TellWhyTheLibraryCannotBeMadeAndCloseNothing) {
  char text[40] = "untouched";
  EXPECT_NE(CloseDevices(0, nullptr), 0);
  EXPECT_EQ(DescribeProblem(nullptr, text, sizeof text), KVUSB_PROBLEM_OTHER);
  EXPECT_STREQ(text, "The HID library failed: no bus.");
}

TEST(Exports, HandOnEveryCallButThoseWithANullPointer) {
  PlainLibrary library;
  made = &library;
  DeviceRecord record{};
  HidPacket packet{};
  packet[kCommandByte] = 0x13;
  std::uint32_t count = 5;
  EXPECT_EQ(DetectHID(nullptr, &record, 2), 0);
  EXPECT_EQ(DetectHID(&count, nullptr, 2), 0);
  EXPECT_EQ(count, 5U);
  EXPECT_EQ(WriteData(nullptr, packet.data()), KVUSB_WRITE_FAILED);
  EXPECT_EQ(WriteData(&record, nullptr), KVUSB_WRITE_FAILED);
  EXPECT_EQ(ReadData(nullptr, packet.data()), KVUSB_READ_FAILED);
  EXPECT_EQ(ReadData(&record, nullptr), KVUSB_READ_FAILED);
  EXPECT_EQ(packet[kEchoByte], 0);
  EXPECT_EQ(CloseDevices(1, nullptr), 0);
  EXPECT_EQ(library.seen, std::vector<int>());

  EXPECT_EQ(DetectHID(&count, &record, 2), 21);
  EXPECT_EQ(count, 2U);
  EXPECT_EQ(WriteData(&record, packet.data()), 22);
  EXPECT_EQ(ReadData(&record, packet.data()), 23);
  EXPECT_EQ(packet[kEchoByte], 0x77);
  EXPECT_EQ(CloseDevices(0, nullptr), 24);
  EXPECT_EQ(CloseDevices(1, &record), 24);
  EXPECT_EQ(library.seen, (std::vector{256, 0x13, 0x13, 0, 1}));

  EXPECT_NE(SetDeviceChangeHandler(nullptr, nullptr), 0);
  const DeviceChangeHandler handler = [](std::uint32_t, std::uint32_t, const char*, void*) {};
  EXPECT_EQ(SetDeviceChangeHandler(handler, nullptr), 0);
  char text[10] = "untouched";
  EXPECT_EQ(DescribeProblem(nullptr, text, sizeof text), 26);
  EXPECT_STREQ(text, "No board ");
  EXPECT_EQ(DescribeProblem(&record, nullptr, 0), 27);
  made = nullptr;
}

}  // namespace
}  // namespace quillon
