// SPDX-License-Identifier: MIT
#include <gmock/gmock.h>

#include "lab/sim/SimFixture.h"

namespace quillon::sim {
namespace {

using ::testing::Each;
using ::testing::ElementsAre;

std::string NodeBoard(const char* mode) {
  return R"("product": "0x0800", "firmware": "1.10", "flash_bytes": 256, "eeprom": true,
            "nodes": [{"node": 1, "loader": "1.02", "flash": "1.30"}, {"node": 2, "flash": "none"},
                      {"node": 12, "flash": "1.20"}], "mode": ")" +
         std::string(mode) + '"';
}

TEST(SimNodes, StatusListsTwelveNodesHighBytesFirst) {
  for (const char* mode : {"device", "flash"}) {
    SimFixture fixture(NodeBoard(mode));
    const Bytes answer = fixture.Ask({0, 0, 0, 0, 0x1D}, 64);
    ASSERT_EQ(answer.size(), 64U);
    EXPECT_THAT(Bytes(answer.begin(), answer.begin() + 17),
                ElementsAre(0x1D, 1,                      // EEPROM
                            1, 0x01, 0x02, 0x01, 0x30,    // node 1
                            1, 0x01, 0x00, 0xFF, 0xFF,    // node 2, no firmware
                            0, 0xFF, 0xFF, 0xFF, 0xFF));  // node 3, absent
    EXPECT_THAT(Bytes(answer.begin() + 57, answer.end()),
                ElementsAre(1, 0x01, 0x00, 0x01, 0x20, kFiller, kFiller));
  }
}

// Requests of the port settings: per port of node 12 the function, offset and length.
struct PortRange {
  std::uint8_t read, write, offset, bytes;
};
constexpr PortRange kPortRanges[] = {
    {0x25, 0x26, 6, 2},  {0x25, 0x26, 8, 2},  {0x27, 0x28, 10, 15}, {0x27, 0x28, 25, 15},
    {0x34, 0x35, 40, 1}, {0x34, 0x35, 41, 1}, {0x14, 0x10, 42, 10}, {0x14, 0x10, 52, 10},
};

TEST(SimNodes, PortSettingsOfBothPortsAreKeptApart) {
  SimFixture fixture(NodeBoard("device"));
  std::uint8_t value = 0x81;
  for (const auto& [read, write, offset, bytes] : kPortRanges) {
    const Bytes data(bytes, value++);
    EXPECT_THAT(fixture.Ask(Joined({0, bytes, offset, bytes, 0x1C, 1, write, 11, 0}, data)),
                ElementsAre(write));
    EXPECT_THAT(fixture.Ask(Joined({0, bytes, offset, bytes, 0x1C, 0, write, 11, 0}, Bytes(bytes))),
                ElementsAre(kRefused))
        << "argument 0";
  }
  value = 0x81;
  for (const auto& [read, write, offset, bytes] : kPortRanges) {
    EXPECT_EQ(fixture.Ask({0, 0, offset, bytes, 0x1C, 0, read, 11, bytes}, bytes + 2U),
              Joined(Joined({read}, Bytes(bytes, value++)), {kFiller}));
    const auto wrong = static_cast<std::uint8_t>(offset + 1);
    EXPECT_THAT(fixture.Ask({0, 0, wrong, bytes, 0x1C, 0, read, 11, bytes}),
                ElementsAre(wrong == 41 ? read : kRefused));
    EXPECT_THAT(fixture.Ask({0, 0, offset, bytes, 0x1C, 0, read, 11, 0}), ElementsAre(kRefused));
    EXPECT_THAT(fixture.Ask({0, 0, offset, bytes, 0x1C, 0, read, 2, bytes}),
                ElementsAre(kNodeFail));
  }
  EXPECT_EQ(fixture.TheBoard().State().nodes[0].memory, FactoryNodeMemory()) << "node 1 untouched";
}

TEST(SimNodes, ANodeUpdateGivesTheNodeTheVersionOfTheFinish) {
  SimFixture fixture(NodeBoard("flash"));
  EXPECT_THAT(fixture.Ask({0, 3, 0, 0, 0x1C, 0, 0, 1}), ElementsAre(kCommandFail)) << "not erased";
  EXPECT_THAT(fixture.Ask({0, 0, 0, 0, 0x1C, 0, 8, 1}), ElementsAre(8));
  EXPECT_THAT(fixture.Ask({0, 0, 0x30, 0x01, 0x1C, 0, 1, 1}), ElementsAre(kConfigFail)) << "empty";
  fixture.Ask({0, 0, 0, 0, 0x1C, 0, 8, 1});
  EXPECT_THAT(fixture.Ask({0, 3, 0x10, 0, 0x1C, 0, 0, 1, 0x99, 7, 8, 9}), ElementsAre(0));
  EXPECT_THAT(fixture.Ask({0, 57, 0, 0, 0x1C, 0, 0, 1}), ElementsAre(kCrcFail))
      << "cut by the packet";
  EXPECT_THAT(fixture.Ask({0, 56, 201, 0, 0x1C, 0, 0, 1}), ElementsAre(kFlashFail));
  EXPECT_THAT(fixture.Ask({0, 0, 0x31, 0x01, 0x1C, 0, 1, 1}), ElementsAre(1));
  EXPECT_THAT(fixture.Ask({0, 3, 0x10, 0, 0x1C, 0, 0, 1}), ElementsAre(kCommandFail)) << "finished";

  const Node& node = fixture.TheBoard().State().nodes[1];
  EXPECT_EQ(node.flash_version, 0x0131);
  ASSERT_EQ(node.flash.bytes.size(), 0x13U);
  EXPECT_EQ(node.flash.bytes[0x12], 9);
  EXPECT_EQ(fixture.TheBoard().State().nodes[0].flash_version, 0x0130) << "node 1 untouched";
}

TEST(SimNodes, RefusesWhatDoesNotFitNodeOrMode) {
  SimFixture loader(NodeBoard("flash"));
  EXPECT_THAT(loader.Ask({0, 0, 0, 0, 0x1C, 0, 8, 2}), ElementsAre(kNodeFail)) << "absent node";
  EXPECT_THAT(loader.Ask({0, 0, 0, 0, 0x1C, 0, 8, 12}), ElementsAre(kNodeFail)) << "no such node";
  EXPECT_THAT(loader.Ask({0, 0, 6, 2, 0x1C, 0, 0x25, 0, 2}), ElementsAre(kRefused));
  SimFixture device(NodeBoard("device"));
  for (const std::uint8_t function : Bytes{8, 0, 1})
    EXPECT_THAT(device.Ask({0, 0, 0, 0, 0x1C, 0, function, 0}), ElementsAre(kCommandFail));
  EXPECT_EQ(device.TheBoard().State().nodes[0].flash_version, 0x0130);
}

TEST(SimNodes, ANodeOfACardIsAddressedInTwoSteps) {
  SimFixture fixture(NodeBoard("device"));
  EXPECT_THAT(fixture.Ask({0, 0, 0, 0, 0x1C, 0, 9, 11}), ElementsAre(kCommandFail))
      << "step 2 first";
  EXPECT_THAT(fixture.Ask({0, 0, 0, 0, 0x1C, 0, 7, 0}), ElementsAre(kCommandFail))
      << "not on a card";
  EXPECT_THAT(fixture.Ask({0, 0, 0, 0, 0x1C, 0, 7, 11}), ElementsAre(7));
  EXPECT_FALSE(fixture.TheBoard().State().nodes[11].addressed);
  EXPECT_THAT(fixture.Ask({0, 0, 0, 0, 0x1C, 0, 9, 11}), ElementsAre(9));
  EXPECT_TRUE(fixture.TheBoard().State().nodes[11].addressed);
}

}  // namespace
}  // namespace quillon::sim
