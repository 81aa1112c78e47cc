// SPDX-License-Identifier: MIT
#include "settings/BlockLayout.h"
#include "settings/HatBlock.h"

namespace quillon::testing {

// The record of a HAT, whose four channels begin with `first`.
std::vector<DrawnField> HatFields(unsigned first) {
  return {{'m', hat::kMode},
          {'o', hat::kOn},
          {'4', hat::Damping(first + 3)},
          {'3', hat::Damping(first + 2)},
          {'2', hat::Damping(first + 1)},
          {'1', hat::Damping(first)}};
}

TEST(HatBlock, HasEveryFieldInItsPlace) {
  for (const unsigned first : {0U, 4U})
    ExpectLayout<hat::Block>("____mmmo 44332211", HatFields(first));
}

TEST(HatBlock, TravelsAsTheBoardHoldsIt) {
  Bytes wire{
      0xAB,  // HAT 1: bits that are kept, code 5, on
      0xE4,  // channels 4 to 1: HI, MID, LO, OFF
      0x58,  // HAT 2: bits that are kept, code 4, off
      0x1B,  // channels 8 to 5: OFF, LO, MID, HI
  };
  auto block = BlockOf<hat::Block>(wire);
  EXPECT_EQ(FieldsOf(block, 0, HatFields(0)), "m5 o1 43 32 21 10");
  EXPECT_EQ(FieldsOf(block, 1, HatFields(4)), "m4 o0 40 31 22 13");

  block.Set(0, hat::kMode, 3);
  block.Set(1, hat::kOn, 1);
  block.Set(1, hat::Damping(4), 2);
  wire[0] = 0xA7;  // the kept bits, code 3, on
  wire[2] = 0x59;  // the kept bits, code 4, on
  wire[3] = 0x1A;  // channel 5: MID
  EXPECT_EQ(WireOf(block), wire);
}

}  // namespace quillon::testing
