// SPDX-License-Identifier: MIT
#include "settings/BlockLayout.h"
#include "settings/HatBlock.h"

namespace quillon::testing {

TEST(HatBlock, HasEveryFieldInItsPlace) {
  const std::vector<DrawnField> hat1{{'o', hat::kOn},        {'m', hat::kMode},
                                     {'1', hat::Damping(0)}, {'2', hat::Damping(1)},
                                     {'3', hat::Damping(2)}, {'4', hat::Damping(3)}};
  ExpectLayout<hat::Block>("____mmmo 44332211", hat1);
  ExpectLayout<hat::Block>("____mmmo 88776655", {{'o', hat::kOn},
                                                 {'m', hat::kMode},
                                                 {'5', hat::Damping(4)},
                                                 {'6', hat::Damping(5)},
                                                 {'7', hat::Damping(6)},
                                                 {'8', hat::Damping(7)}});
}

TEST(HatBlock, TravelsAsTheBoardHoldsIt) {
  std::vector<std::uint8_t> wire{
      0xAB,  // HAT 1: bits that are kept, code 5, on
      0xE4,  // channels 4 to 1: HI, MID, LO, OFF
      0x58,  // HAT 2: bits that are kept, code 4, off
      0x1B,  // channels 8 to 5: OFF, LO, MID, HI
  };
  auto block = BlockOf<hat::Block>(wire);
  EXPECT_EQ(block.Get(0, hat::kMode), 5U);
  EXPECT_EQ(block.Get(0, hat::kOn), 1U);
  EXPECT_EQ(block.Get(0, hat::Damping(0)), 0U);
  EXPECT_EQ(block.Get(0, hat::Damping(3)), 3U);
  EXPECT_EQ(block.Get(1, hat::kMode), 4U);
  EXPECT_EQ(block.Get(1, hat::kOn), 0U);
  EXPECT_EQ(block.Get(1, hat::Damping(4)), 3U);
  EXPECT_EQ(block.Get(1, hat::Damping(7)), 0U);

  block.Set(0, hat::kMode, 3);
  block.Set(1, hat::kOn, 1);
  block.Set(1, hat::Damping(4), 2);
  wire[0] = 0xA7;  // the kept bits, code 3, on
  wire[2] = 0x59;  // the kept bits, code 4, on
  wire[3] = 0x1A;  // channel 5: MID
  EXPECT_EQ(WireOf(block), wire);
}

}  // namespace quillon::testing
