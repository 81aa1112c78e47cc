// SPDX-License-Identifier: MIT
#include "settings/AnalogBlocks.h"
#include "settings/BlockLayout.h"

namespace quillon::testing {
namespace {

const std::vector<DrawnField> kAnalog{{'f', analog::kFilter},     {'i', analog::kInvert},
                                      {'s', analog::kSpike},      {'o', analog::kOn},
                                      {'r', analog::kResolution}, {'a', analog::kAxisBits}};
const std::vector<DrawnField> kEncoder{{'r', encoder::kResolution},  {'i', encoder::kInvert},
                                       {'n', encoder::kIncremental}, {'o', encoder::kOn},
                                       {'c', encoder::kCentering},   {'a', encoder::kAxisBits}};

TEST(AnalogBlock, HasEveryFieldInItsPlace) {
  ExpectLayout<analog::Block>("ffff_iso ____rrrr aaaaaaaa", kAnalog);
  std::vector<DrawnField> axes;
  for (unsigned axis = 0; axis < 8; ++axis)
    axes.push_back({static_cast<char>('1' + axis), AxisBit(axis)});
  ExpectLayout<analog::Block>("________ ________ 87654321", axes);
}

TEST(AnalogBlock, TravelsAsTheBoardHoldsIt) {
  Bytes wire(24);
  wire[0] = 0xA7;   // filter 10, invert, spike, on
  wire[1] = 0x0B;   // 12 bits
  wire[2] = 0x01;   // X
  wire[21] = 0x58;  // filter 5, a bit that is kept, off
  wire[22] = 0xF3;  // bits that are kept, 4 bits
  wire[23] = 0xC0;  // S1, S2
  auto block = BlockOf<analog::Block>(wire);
  EXPECT_EQ(FieldsOf(block, 0, kAnalog), "f10 i1 s1 o1 r11 a1");
  EXPECT_EQ(FieldsOf(block, 7, kAnalog), "f5 i0 s0 o0 r3 a192");
  EXPECT_EQ(block.Get(0, AxisBit(0)), 1U);

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
  ExpectLayout<encoder::Block>("rrrr_ino ___ccccc aaaaaaaa", kEncoder);
}

TEST(EncoderBlock, TravelsAsTheBoardHoldsIt) {
  Bytes wire(21);
  wire[0] = 0xB5;   // 12 bits, invert, on
  wire[1] = 0x03;   // centred by button 3
  wire[2] = 0x20;   // Rz
  wire[18] = 0xFA;  // 16 bits, a bit that is kept, incremental, off
  wire[19] = 0xFF;  // bits that are kept, button 31
  auto block = BlockOf<encoder::Block>(wire);
  EXPECT_EQ(FieldsOf(block, 0, kEncoder), "r11 i1 n0 o1 c3 a32");
  EXPECT_EQ(FieldsOf(block, 6, kEncoder), "r15 i0 n1 o0 c31 a0");

  block.Set(6, encoder::kIncremental, 0);
  block.Set(6, encoder::kCentering, 16);
  wire[18] = 0xF8;  // 16 bits, the kept bit
  wire[19] = 0xF0;  // the kept bits, button 16
  EXPECT_EQ(WireOf(block), wire);
}

}  // namespace
}  // namespace quillon::testing
