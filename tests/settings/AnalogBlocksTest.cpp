// SPDX-License-Identifier: MIT
#include "settings/AnalogBlocks.h"
#include "settings/BlockLayout.h"

namespace quillon::testing {

TEST(AnalogBlock, HasEveryFieldInItsPlace) {
  ExpectLayout<analog::Block>("ffff_iso ____rrrr aaaaaaaa", {{'o', analog::kOn},
                                                             {'s', analog::kSpike},
                                                             {'i', analog::kInvert},
                                                             {'f', analog::kFilter},
                                                             {'r', analog::kResolution},
                                                             {'a', analog::kAxisBits}});
  ExpectLayout<analog::Block>("________ ________ 87654321", {{'1', AxisBit(0)},
                                                             {'2', AxisBit(1)},
                                                             {'3', AxisBit(2)},
                                                             {'4', AxisBit(3)},
                                                             {'5', AxisBit(4)},
                                                             {'6', AxisBit(5)},
                                                             {'7', AxisBit(6)},
                                                             {'8', AxisBit(7)}});
}

TEST(AnalogBlock, TravelsAsTheBoardHoldsIt) {
  std::vector<std::uint8_t> wire(24);
  wire[0] = 0xA7;   // filter 10, invert, spike, on
  wire[1] = 0x0B;   // 12 bits
  wire[2] = 0x01;   // X
  wire[21] = 0x58;  // filter 5, a bit that is kept, off
  wire[22] = 0xF3;  // bits that are kept, 4 bits
  wire[23] = 0xC0;  // S1, S2
  auto block = BlockOf<analog::Block>(wire);
  EXPECT_EQ(block.Get(0, analog::kFilter), 10U);
  EXPECT_EQ(block.Get(0, analog::kInvert), 1U);
  EXPECT_EQ(block.Get(0, analog::kSpike), 1U);
  EXPECT_EQ(block.Get(0, analog::kOn), 1U);
  EXPECT_EQ(block.Get(0, analog::kResolution), 11U);
  EXPECT_EQ(block.Get(0, AxisBit(0)), 1U);
  EXPECT_EQ(block.Get(7, analog::kFilter), 5U);
  EXPECT_EQ(block.Get(7, analog::kOn), 0U);
  EXPECT_EQ(block.Get(7, analog::kResolution), 3U);
  EXPECT_EQ(block.Get(7, analog::kAxisBits), 0xC0U);

  block.Set(7, analog::kFilter, 0);
  block.Set(7, analog::kOn, 1);
  block.Set(7, analog::kResolution, 9);
  block.Set(7, AxisBit(5), 1);
  wire[21] = 0x09;  // no filter, the kept bit, on
  wire[22] = 0xF9;  // the kept bits, 10 bits
  wire[23] = 0xE0;  // Rz, S1, S2
  EXPECT_EQ(WireOf(block), wire);
}

TEST(EncoderBlock, HasEveryFieldInItsPlace) {
  ExpectLayout<encoder::Block>("rrrr_ino ___ccccc aaaaaaaa", {{'o', encoder::kOn},
                                                              {'n', encoder::kIncremental},
                                                              {'i', encoder::kInvert},
                                                              {'r', encoder::kResolution},
                                                              {'c', encoder::kCentering},
                                                              {'a', encoder::kAxisBits}});
}

TEST(EncoderBlock, TravelsAsTheBoardHoldsIt) {
  std::vector<std::uint8_t> wire(21);
  wire[0] = 0xB5;   // 12 bits, invert, on
  wire[1] = 0x03;   // centred by button 3
  wire[2] = 0x20;   // Rz
  wire[18] = 0xFA;  // 16 bits, a bit that is kept, incremental, off
  wire[19] = 0xFF;  // bits that are kept, button 31
  auto block = BlockOf<encoder::Block>(wire);
  EXPECT_EQ(block.Get(0, encoder::kResolution), 11U);
  EXPECT_EQ(block.Get(0, encoder::kInvert), 1U);
  EXPECT_EQ(block.Get(0, encoder::kIncremental), 0U);
  EXPECT_EQ(block.Get(0, encoder::kOn), 1U);
  EXPECT_EQ(block.Get(0, encoder::kCentering), 3U);
  EXPECT_EQ(block.Get(0, AxisBit(5)), 1U);
  EXPECT_EQ(block.Get(6, encoder::kResolution), 15U);
  EXPECT_EQ(block.Get(6, encoder::kIncremental), 1U);
  EXPECT_EQ(block.Get(6, encoder::kCentering), 31U);

  block.Set(6, encoder::kIncremental, 0);
  block.Set(6, encoder::kCentering, 16);
  wire[18] = 0xF8;  // 16 bits, the kept bit
  wire[19] = 0xF0;  // the kept bits, button 16
  EXPECT_EQ(WireOf(block), wire);
}

}  // namespace quillon::testing
