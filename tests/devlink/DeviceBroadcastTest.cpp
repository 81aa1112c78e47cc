// SPDX-License-Identifier: MIT
#include <gmock/gmock.h>

#include <string_view>
#include <vector>

#include "devlink/DeviceBroadcast.h"

namespace quillon {
namespace {

using namespace std::string_view_literals;

// A structure of its own on the heap, so that a checked build sees every byte read beyond it.
std::optional<DeviceBroadcast> Read(std::uint32_t event, std::string_view header,
                                    std::string_view path) {
  std::vector<std::uint8_t> bytes(header.begin(), header.end());
  bytes.insert(bytes.end(), path.begin(), path.end());
  bytes.shrink_to_fit();
  return ReadDeviceBroadcast(event, bytes);
}

TEST(DeviceBroadcast, ReadsThePathInsideTheStructureOnly) {
  constexpr auto kClass =
      "\x10\xBF\xDC\xA5\x30\x65\xD2\x11\x90\x1F\x00\xC0\x4F\xB9\x51\xED"sv;  // as it lies in memory
  struct Case {
    const char* what;
    std::string_view size;
    std::string_view text;
    std::string_view path;
  };
  const Case cases[] = {
      {"bytes", "\x26\0\0\0"sv, "USB#VID_1\0"sv, "USB#VID_1"},
      {"wide", "\x2A\0\0\0"sv, "\\\0U\0S\0B\0#\0V\0\0\0"sv, "\\USB#V"},
      {"bytes with the size of wide ones", "\x26\0\0\0"sv, "USB#\0\xCC\xCC\xCC\xCC\xCC"sv, "USB#"},
      {"not ASCII, bytes", "\x20\0\0\0"sv, "U\x80\xFF\0"sv, "U??"},
      {"not ASCII, wide", "\x28\0\0\0"sv, "U\0\xE9\0\x41\x01\0\x01V\0\0\0"sv, "U???V"},
      {"without a zero, bytes", "\x1F\0\0\0"sv, "USB"sv, "USB"},
      {"without a zero, wide", "\x20\0\0\0"sv, "U\0S\0"sv, "US"},
      {"half a wide character", "\x21\0\0\0"sv, "U\0S\0B"sv, "US"},
      {"one byte", "\x1D\0\0\0"sv, "U"sv, "U"},
      {"size cuts the text", "\x1E\0\0\0"sv, "USB#VID_1\0"sv, "US"},
      {"size ends before the text", "\x1C\0\0\0"sv, "USB\0"sv, ""},
      {"size ends in the class", "\x14\0\0\0"sv, "USB\0"sv, ""},
      {"size is beyond the bytes", "\x00\0\0\x80"sv, "USB"sv, "USB"},
      {"size is beyond all bytes", "\xFF\xFF\xFF\xFF"sv, "U\0S\0B"sv, "US"},
      {"no text, bytes", "\x1D\0\0\0"sv, "\0"sv, ""},
      {"no text, wide", "\x20\0\0\0"sv, "\0\0U\0"sv, ""},
      {"nothing left for a text", "\x20\0\0\0"sv, ""sv, ""},
  };
  for (const Case& c : cases) {
    SCOPED_TRACE(c.what);
    const auto header =
        std::string(c.size).append("\x05\0\0\0\xCC\xCC\xCC\xCC"sv).append(std::string(kClass));
    const auto read = Read(0x8004, header, c.text);
    ASSERT_TRUE(read);
    EXPECT_EQ(read->event, 0x8004U);
    EXPECT_EQ(read->device_type, 5U);
    EXPECT_EQ(read->path, c.path);
  }
}

TEST(DeviceBroadcast, OtherDevicesHaveATypeAndNoPath) {
  const auto volume = Read(0x8000, "\x14\0\0\0\x02\x01\0\0\0\0\0\0"sv, "\x04\0\0\0\0\0\0\0"sv);
  ASSERT_TRUE(volume);
  EXPECT_EQ(volume->device_type, 0x102U);
  EXPECT_EQ(volume->path, "");
  const auto text = Read(0x8000, "\x26\0\0\0\x03\0\0\0\0\0\0\0"sv, "a class of 16 b.USB\0"sv);
  ASSERT_TRUE(text);
  EXPECT_EQ(text->path, "") << "a port's name stands elsewhere";
  EXPECT_TRUE(Read(0x8000, "\x0C\0\0\0\x05\0\0\0\0\0\0\0"sv, ""sv)) << "just the header";
}

TEST(DeviceBroadcast, NothingIsReadFromACutHeader) {
  EXPECT_FALSE(Read(0x8000, ""sv, ""sv));
  EXPECT_FALSE(Read(0x8000, "\x0C\0\0"sv, ""sv));
  EXPECT_FALSE(Read(0x8000, "\x0C\0\0\0\x05\0\0\0\0\0\0"sv, ""sv)) << "a byte short";
  EXPECT_FALSE(Read(0x8000, "\x0B\0\0\0\x05\0\0\0\0\0\0\0"sv, ""sv)) << "by its own size";
  EXPECT_FALSE(Read(0x8000, "\0\0\0\0\x05\0\0\0\0\0\0\0"sv, "a class of 16 b.USB\0"sv));
}

TEST(DeviceBroadcast, OnlySomeEventsHaveAStructure) {
  for (const std::uint32_t event : {0x8000U, 0x8001U, 0x8004U, 0x8007U}) {
    EXPECT_TRUE(HasBroadcast(event)) << event;
  }
  // Devices changed, configuration changed, a driver's own text, no event at all.
  for (const std::uint32_t event : {0U, 7U, 0x18U, 0xC000U, 0xFFFFU, 0x18000U}) {
    EXPECT_FALSE(HasBroadcast(event)) << event;
  }
}

}  // namespace
}  // namespace quillon
