// SPDX-License-Identifier: MIT
#include <gmock/gmock.h>

#include <map>

#include "firmware/CardAddress.h"
#include "testing/link/TranscriptLibrary.h"

namespace quillon {
namespace {

using Told = std::map<std::size_t, AddressResult>;
using enum AddressResult;

TEST(CardAddress, TakesTwoStepsForEachActiveNodeOfTheCard) {
  NodeRecords nodes;
  for (const std::size_t node : {3U, 8U, 9U, 11U}) nodes[node].status = 1;
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
      {"no active node", 1, "", {}, true},
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
}

}  // namespace
}  // namespace quillon
