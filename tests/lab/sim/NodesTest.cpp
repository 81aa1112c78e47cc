// SPDX-License-Identifier: MIT
#include <gmock/gmock.h>

#include <array>

#include "lab/sim/SimFixture.h"

namespace quillon::sim {
namespace {

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

// The status, loader version and flash version of a node.
Bytes StatusOf(SimFixture& fixture, std::size_t node) {
  const Bytes answer = fixture.Ask({0, 0, 0, 0, 0x1D}, 64);
  const auto at = answer.begin() + 2 + static_cast<std::ptrdiff_t>(node) * 5;
  return {at, at + 5};
}

constexpr std::uint8_t kSecond = 1;  // the node that is updated
const Bytes kEraseNode = {0, 0, 0, 0, 0x1C, 0, 8, kSecond};
const Bytes kNodeRecord = {0, 3, 0x10, 0, 0x1C, 0, 0, kSecond, 0x99, 7, 8, 9};
const Bytes kFinishNode = {0, 0, 0x31, 0x01, 0x1C, 0, 1, kSecond};

TEST(SimNodes, ANodeUpdateGivesTheNodeTheVersionOfTheFinish) {
  SimFixture fixture(NodeBoard("flash"));
  EXPECT_THAT(fixture.Ask(kNodeRecord), ElementsAre(kCommandFail)) << "not erased";
  const Bytes cut = {0, 57, 0, 0, 0x1C, 0, 0, kSecond};
  const Bytes beyond = {0, 56, 201, 0, 0x1C, 0, 0, kSecond};
  const std::pair<Bytes, std::uint8_t> last[] = {
      {cut, kCrcFail}, {beyond, kFlashFail}, {kEraseNode, 8}};
  for (const auto& [request, answer] : last) {
    for (const Bytes& before : {kEraseNode, kNodeRecord}) fixture.Ask(before);
    EXPECT_THAT(fixture.Ask(request), ElementsAre(answer));
    EXPECT_THAT(fixture.Ask(kFinishNode), ElementsAre(kConfigFail)) << "not whole";
  }
  for (const Bytes& request : {kEraseNode, kNodeRecord}) fixture.Ask(request);
  EXPECT_THAT(fixture.Ask({0, 0, 0, 0, 0x1C, 0, 1, kSecond}), ElementsAre(kConfigFail));
  EXPECT_THAT(fixture.Ask(kEraseNode), ElementsAre(8));
  EXPECT_THAT(fixture.Ask(kNodeRecord), ElementsAre(0));
  EXPECT_THAT(StatusOf(fixture, kSecond), ElementsAre(1, 0x01, 0x00, 0xFF, 0xFF)) << "half way";
  EXPECT_THAT(fixture.Ask(kFinishNode), ElementsAre(1));
  EXPECT_THAT(fixture.Ask(kNodeRecord), ElementsAre(kCommandFail)) << "finished";
  EXPECT_THAT(StatusOf(fixture, kSecond), ElementsAre(1, 0x01, 0x00, 0x01, 0x31));

  const Node& node = fixture.TheBoard().State().nodes[kSecond];
  ASSERT_EQ(node.flash.bytes.size(), 0x13U);
  EXPECT_EQ(node.flash.bytes[0x12], 9);
  EXPECT_EQ(fixture.TheBoard().State().nodes[0].flash_version, 0x0130) << "node 1 untouched";
}

TEST(SimNodes, ANodeThatFailsInTheMiddleTakesTheNextUpdate) {
  for (const std::uint8_t status : Bytes{2, 4, 5, 6, 10, 11, 0}) {
    const std::string fault = R"("kind": "status", "value": )" + std::to_string(status);
    SimFixture fixture(NodeBoard("flash") + R"(, "faults": [{"command": "0x1C", "nth": 2,
                       "function": "0x00", "node": 2, )" +
                       (status == 0 ? R"("kind": "read_fails")" : fault) + "}]");
    fixture.Ask(kEraseNode);
    fixture.Ask(kNodeRecord);
    EXPECT_EQ(fixture.Ask(kNodeRecord), status == 0 ? Bytes{} : Bytes{status});
    EXPECT_THAT(StatusOf(fixture, kSecond), ElementsAre(1, 0x01, 0x00, 0xFF, 0xFF));
    // A record that is only not confirmed has arrived.
    EXPECT_THAT(fixture.Ask(kFinishNode), ElementsAre(status == 0 ? 1 : kConfigFail));
    for (const Bytes& request : {kEraseNode, kNodeRecord, kFinishNode}) fixture.Ask(request);
    EXPECT_THAT(StatusOf(fixture, kSecond), ElementsAre(1, 0x01, 0x00, 0x01, 0x31));
  }
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

// Node 5 on card 1, nodes 9 and 10 on card 2.
std::string CardBoard(const char* cards) {
  return R"("product": "0x0800", "firmware": "1.10", "nodes": [{"node": 5, "flash": "1.30"},
            {"node": 9, "flash": "1.30"}, {"node": 10, "flash": "1.30"}], "cards": [)" +
         std::string(cards) + ']';
}

Bytes NodeFunction(std::uint8_t function, std::uint8_t node) {
  return {0, 0, 0, 0, 0x1C, 0, function, node};
}
Bytes ReadPort(std::uint8_t node) { return {0, 0, 6, 2, 0x1C, 0, 0x25, node, 2}; }

TEST(SimNodes, ANodeOfANewCardAnswersOnceItIsAddressed) {
  SimFixture fixture(CardBoard(R"({"card": 1, "plugged": false},
                                  {"card": 2, "addressed": false})"));
  EXPECT_THAT(StatusOf(fixture, 8), ElementsAre(1, 0x01, 0x00, 0x01, 0x30)) << "but it is seen";
  EXPECT_THAT(fixture.Ask(ReadPort(8)), ElementsAre(kNodeFail));
  EXPECT_THAT(fixture.Ask(NodeFunction(9, 8)), ElementsAre(kCommandFail)) << "step 2 first";
  EXPECT_THAT(fixture.Ask(NodeFunction(7, 8)), ElementsAre(7));
  EXPECT_THAT(fixture.Ask(ReadPort(8)), ElementsAre(kNodeFail)) << "between the steps";
  EXPECT_THAT(fixture.Ask(NodeFunction(9, 9)), ElementsAre(kCommandFail)) << "of another node";
  EXPECT_THAT(fixture.Ask(NodeFunction(9, 8)), ElementsAre(9));
  EXPECT_THAT(fixture.Ask(ReadPort(8)), ElementsAre(0x25));
  EXPECT_THAT(fixture.Ask(ReadPort(9)), ElementsAre(kNodeFail)) << "each node by itself";
  EXPECT_THAT(fixture.Ask(NodeFunction(7, 4)), ElementsAre(kNodeFail)) << "not plugged";

  SimFixture both(CardBoard(R"({"card": 2, "addressed": false})"));
  EXPECT_THAT(both.Ask(NodeFunction(7, 8)), ElementsAre(kCommandFail)) << "another card is there";
}

TEST(SimNodes, CardsComeAndGoBetweenStatusQueries) {
  SimFixture fixture(CardBoard(R"({"card": 1, "plugged": false, "moves": [3]},
                                  {"card": 2, "moves": [1, 2]})"));
  fixture.Ask({0, 2, 6, 2, 0x1C, 1, 0x26, 8, 0, 0x0D, 0xC0});
  fixture.Ask(NodeFunction(7, 8));
  const std::array<Bytes, 4> there = {{{0, 0}, {0, 1}, {1, 1}, {1, 1}}};
  for (const Bytes& expected : there) {
    const Bytes status = fixture.Ask({0, 0, 0, 0, 0x1D}, 64);
    EXPECT_EQ((Bytes{status[2 + 4 * 5], status[2 + 8 * 5]}), expected);
    EXPECT_THAT(fixture.Ask(NodeFunction(9, 8)),
                ElementsAre(expected[1] != 0 ? kCommandFail : kNodeFail))
        << "step 1 is forgotten";
    EXPECT_THAT(fixture.Ask(ReadPort(4)), ElementsAre(expected[0] != 0 ? 0x25 : kNodeFail));
    EXPECT_THAT(fixture.Ask(ReadPort(8)), ElementsAre(expected[1] != 0 ? 0x25 : kNodeFail));
  }
  EXPECT_THAT(fixture.Ask(ReadPort(8), 3), ElementsAre(0x25, 0x0D, 0xC0)) << "kept on the card";
}

}  // namespace
}  // namespace quillon::sim
