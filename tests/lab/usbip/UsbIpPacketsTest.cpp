// SPDX-License-Identifier: MIT
#include <gmock/gmock.h>

#include "lab/usbip/HostBytes.h"
#include "usbip/UsbIpPackets.h"

namespace quillon::usbip {
namespace {

using ::testing::ElementsAre;

const Wire kGetDevice = {0, 0, 0, 1,                                      // submit
                         0, 0, 0, 5,                                      // number 5
                         0, 1, 0, 2, 0,    0,    0,    1,    0, 0, 0, 0,  // device, in, endpoint 0
                         0, 0, 2, 0, 0,    0,    0,    64,                // flags, length 64
                         0, 0, 0, 0, 0xFF, 0xFF, 0xFF, 0xFF, 0, 0, 0, 0, 0x80,
                         6, 0, 1, 0, 0,    64,   0};  // setup

TEST(UsbIpPackets, RequestsAreCutFromAStreamInAnyPieces) {
  const Wire out_of_three = SubmitBytes(0x12345678, false, 2, 3, {}, {'a', 'b', 'c'});
  const Wire stream = Joined(Joined(kGetDevice, UnlinkBytes(6, 5)), out_of_three);
  RequestReader reader;
  std::vector<HostRequest> requests;
  for (const std::uint8_t byte : stream) {
    reader.Add({&byte, 1});
    while (const auto request = reader.Next()) requests.push_back(*request);
  }
  ASSERT_EQ(requests.size(), 3U);
  const auto& get = std::get<Submit>(requests[0]);
  EXPECT_EQ(get.number, 5U);
  EXPECT_TRUE(get.in);
  EXPECT_EQ(get.endpoint, 0U);
  EXPECT_EQ(get.length, 64U);
  EXPECT_THAT(get.setup, ElementsAre(0x80, 6, 0, 1, 0, 0, 64, 0));
  EXPECT_TRUE(get.data.empty());
  EXPECT_EQ(std::get<Unlink>(requests[1]).number, 6U);
  EXPECT_EQ(std::get<Unlink>(requests[1]).victim, 5U);
  const auto& out = std::get<Submit>(requests[2]);
  EXPECT_EQ(out.number, 0x12345678U);
  EXPECT_FALSE(out.in);
  EXPECT_EQ(out.endpoint, 2U);
  EXPECT_THAT(out.data, ElementsAre('a', 'b', 'c'));
  EXPECT_FALSE(reader.Broken());
}

TEST(UsbIpPackets, NonsenseBreaksTheStreamForGood) {
  const std::pair<const char*, Wire> cases[] = {
      {"no command", Wire(48, 0)},
      {"an answer", AnswerBytes(1, 0, 0)},
      {"text", Wire(48, 'x')},
      {"a third direction", Words({1, 1, 0, 2, 1, 0, 0, 0, 0, 0, 0, 0})},
      {"more to send than there can be", SubmitBytes(1, false, 1, 0x10001)},
      {"a negative length", SubmitBytes(1, false, 1, 0xFFFFFFFF)},
      {"more to fetch than there can be", SubmitBytes(1, true, 1, 0x80000000)},
      {"an isochronous transfer", Words({1, 1, 0, 1, 1, 0, 64, 0, 2, 0, 0, 0})},
  };
  for (const auto& [about, bytes] : cases) {
    RequestReader reader;
    reader.Add(bytes);
    EXPECT_EQ(reader.Next(), std::nullopt) << about;
    EXPECT_TRUE(reader.Broken()) << about;
    reader.Add(kGetDevice);
    EXPECT_EQ(reader.Next(), std::nullopt) << about;
  }
}

}  // namespace
}  // namespace quillon::usbip
