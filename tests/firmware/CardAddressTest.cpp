// SPDX-License-Identifier: MIT
#include <gmock/gmock.h>

#include <map>

#include "firmware/CardAddress.h"
#include "lab/sim/SimFixture.h"
#include "testing/link/TranscriptLibrary.h"

namespace quillon {
namespace {

using Told = std::map<std::size_t, AddressResult>;
using enum AddressResult;

NodeRecords Active(std::initializer_list<std::size_t> active) {
  NodeRecords nodes;
  for (const std::size_t node : active) nodes[node].status = 1;
  return nodes;
}

TEST(CardAddress, TakesTwoStepsForEachActiveNodeOfTheCard) {
  NodeRecords nodes = Active({3, 4, 8, 9, 11});
  nodes[10].status = 2;  // absent
  const struct {
    const char* name;
    std::size_t card;
    const char* transcript;
    Told told;
    bool all;
  } cases[] = {
      {"all of card 2",
       2,
       "write 0 -> 0 : 00 00 00 00 1c 00 07 08 *\nread 0 -> 0 : 07 5a *\n"
       "write 0 -> 0 : 00 00 00 00 1c 00 09 08 *\nread 0 -> 0 : 09 5a *\n"
       "write 0 -> 0 : 00 00 00 00 1c 00 07 09 *\nread 0 -> 0 : 07 5a *\n"
       "write 0 -> 0 : 00 00 00 00 1c 00 09 09 *\nread 0 -> 0 : 02 *\n"  // is not looked at
       "write 0 -> 0 : 00 00 00 00 1c 00 07 0b *\nread 0 -> 0 : 07 *\n"
       "write 0 -> 0 : 00 00 00 00 1c 00 09 0b *\nread 0 -> 4",
       {{8, kAddressed}, {9, kAddressed}, {11, kAddressed}},
       true},
      {"goes on after a failure",
       2,
       "write 0 -> 1 : 00 00 00 00 1c 00 07 08 *\n"
       "write 0 -> 0 : 00 00 00 00 1c 00 07 09 *\nread 0 -> 0 : 09 *\n"
       "write 0 -> 0 : 00 00 00 00 1c 00 07 0b *\nread 0 -> 0 : 07 *\n"
       "write 0 -> 0 : 00 00 00 00 1c 00 09 0b *\nread 0 -> 0 : 09 *",
       {{8, kNotTransported}, {9, kRefused}, {11, kAddressed}},
       false},
      {"a lost answer",
       1,
       "write 0 -> 0 : 00 00 00 00 1c 00 07 04 *\nread 0 -> 4",
       {{4, kNotTransported}},
       false},
  };
  for (const auto& c : cases) {
    testing::TranscriptLibrary library(c.transcript);
    DeviceRecord board{};
    Told told;
    EXPECT_EQ(AddressCard(library, board, c.card, nodes,
                          [&](std::size_t node, AddressResult result) { told[node] = result; }),
              c.all)
        << c.name;
    EXPECT_EQ(told, c.told) << c.name;
  }
  testing::TranscriptLibrary silent("");
  DeviceRecord board{};
  EXPECT_TRUE(AddressCard(silent, board, 2, Active({3, 4}), [](auto, auto) { FAIL(); }));
}

TEST(CardAddress, ReachesABoard) {
  sim::SimFixture board(R"("product": "0x0800", "firmware": "1.10",
      "nodes": [{"node": 4, "flash": "1.30"}, {"node": 5, "flash": "1.30"},
                {"node": 8, "flash": "none"}, {"node": 9, "flash": "1.30"}])");
  EXPECT_TRUE(AddressCard(board.bus, board.record, 1, Active({4, 7}), [](auto, auto) {}));
  const sim::Nodes& nodes = board.TheBoard().State().nodes;
  for (std::size_t i = 0; i < nodes.size(); ++i) {
    EXPECT_EQ(nodes[i].addressed, i == 4 || i == 7) << i;
  }
}

}  // namespace
}  // namespace quillon
