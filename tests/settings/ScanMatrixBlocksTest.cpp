// SPDX-License-Identifier: MIT
#include "settings/BlockLayout.h"
#include "settings/ScanMatrixBlocks.h"

namespace quillon::testing {

TEST(ScanMatrixBlocks, HaveEveryFieldInItsPlace) {
  ExpectLayout<matrix_input::Block>("mmmm_Mio", {{'o', matrix_input::kOn},
                                                 {'i', matrix_input::kInvert},
                                                 {'M', matrix_input::kMaster},
                                                 {'m', matrix_input::kMode}});
  ExpectLayout<matrix_pair::Block>("___heeee pppppppp qqqqqqqq", {{'e', matrix_pair::kEncoder},
                                                                  {'h', matrix_pair::kHold},
                                                                  {'p', matrix_pair::kPush},
                                                                  {'q', matrix_pair::kPull}});
}

TEST(ScanMatrixBlocks, TravelAsTheBoardHoldsThem) {
  std::vector<std::uint8_t> input_wire(64);
  input_wire[0] = 0x2B;   // rotary, a bit that is kept, invert, on
  input_wire[63] = 0x15;  // toggle, master, on
  auto inputs = BlockOf<matrix_input::Block>(input_wire);
  EXPECT_EQ(inputs.Get(0, matrix_input::kMode), 2U);
  EXPECT_EQ(inputs.Get(0, matrix_input::kInvert), 1U);
  EXPECT_EQ(inputs.Get(0, matrix_input::kMaster), 0U);
  EXPECT_EQ(inputs.Get(63, matrix_input::kMode), 1U);
  EXPECT_EQ(inputs.Get(63, matrix_input::kInvert), 0U);
  EXPECT_EQ(inputs.Get(63, matrix_input::kMaster), 1U);
  inputs.Set(0, matrix_input::kMode, 0);
  inputs.Set(0, matrix_input::kMaster, 1);
  input_wire[0] = 0x0F;  // normal, the kept bit, master, invert, on
  EXPECT_EQ(WireOf(inputs), input_wire);

  std::vector<std::uint8_t> pair_wire(96);
  pair_wire[0] = 0xB2;   // bits that are kept, hold, GRAY 2X
  pair_wire[1] = 0x40;   // push: button 64
  pair_wire[2] = 0x01;   // pull: button 1
  pair_wire[93] = 0x03;  // GRAY 4X
  auto pairs = BlockOf<matrix_pair::Block>(pair_wire);
  EXPECT_EQ(pairs.Get(0, matrix_pair::kEncoder), 2U);
  EXPECT_EQ(pairs.Get(0, matrix_pair::kHold), 1U);
  EXPECT_EQ(pairs.Get(0, matrix_pair::kPush), 64U);
  EXPECT_EQ(pairs.Get(0, matrix_pair::kPull), 1U);
  EXPECT_EQ(pairs.Get(31, matrix_pair::kEncoder), 3U);
  pairs.Set(0, matrix_pair::kHold, 0);
  pairs.Set(0, matrix_pair::kPull, 64);
  pair_wire[0] = 0xA2;  // the kept bits, GRAY 2X
  pair_wire[2] = 0x40;  // pull: button 64
  EXPECT_EQ(WireOf(pairs), pair_wire);
}

}  // namespace quillon::testing
