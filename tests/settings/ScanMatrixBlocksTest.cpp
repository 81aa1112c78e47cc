// SPDX-License-Identifier: MIT
#include "settings/BlockLayout.h"
#include "settings/ScanMatrixBlocks.h"

namespace quillon::testing {

const std::vector<DrawnField> kInput{{'m', matrix_input::kMode},
                                     {'M', matrix_input::kMaster},
                                     {'i', matrix_input::kInvert},
                                     {'o', matrix_input::kOn}};
const std::vector<DrawnField> kPair{{'h', matrix_pair::kHold},
                                    {'e', matrix_pair::kEncoder},
                                    {'p', matrix_pair::kPush},
                                    {'q', matrix_pair::kPull}};

TEST(ScanMatrixBlocks, HaveEveryFieldInItsPlace) {
  ExpectLayout<matrix_input::Block>("mmmm_Mio", kInput);
  ExpectLayout<matrix_pair::Block>("___heeee pppppppp qqqqqqqq", kPair);
}

TEST(ScanMatrixBlocks, TravelAsTheBoardHoldsThem) {
  Bytes input_wire(64);
  input_wire[0] = 0x2B;   // rotary, a bit that is kept, invert, on
  input_wire[63] = 0x15;  // toggle, master, on
  auto inputs = BlockOf<matrix_input::Block>(input_wire);
  EXPECT_EQ(FieldsOf(inputs, 0, kInput), "m2 M0 i1 o1");
  EXPECT_EQ(FieldsOf(inputs, 63, kInput), "m1 M1 i0 o1");
  inputs.Set(0, matrix_input::kMode, 0);
  inputs.Set(0, matrix_input::kMaster, 1);
  input_wire[0] = 0x0F;  // normal, the kept bit, master, invert, on
  EXPECT_EQ(WireOf(inputs), input_wire);

  Bytes pair_wire(96);
  pair_wire[0] = 0xB2;   // bits that are kept, hold, GRAY 2X
  pair_wire[1] = 0x40;   // push: button 64
  pair_wire[2] = 0x01;   // pull: button 1
  pair_wire[93] = 0x03;  // GRAY 4X
  auto pairs = BlockOf<matrix_pair::Block>(pair_wire);
  EXPECT_EQ(FieldsOf(pairs, 0, kPair), "h1 e2 p64 q1");
  EXPECT_EQ(FieldsOf(pairs, 31, kPair), "h0 e3 p0 q0");
  pairs.Set(0, matrix_pair::kHold, 0);
  pairs.Set(0, matrix_pair::kPull, 64);
  pair_wire[0] = 0xA2;  // the kept bits, GRAY 2X
  pair_wire[2] = 0x40;  // pull: button 64
  EXPECT_EQ(WireOf(pairs), pair_wire);
}

}  // namespace quillon::testing
