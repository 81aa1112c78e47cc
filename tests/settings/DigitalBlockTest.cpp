// SPDX-License-Identifier: MIT
#include "settings/BlockLayout.h"
#include "settings/DigitalBlock.h"

namespace quillon::testing {

TEST(DigitalBlock, HasEveryFieldInItsPlace) {
  ExpectLayout<digital::Block>("mmmm_iMo pppppppp ____eeee", {{'o', digital::kOn},
                                                              {'M', digital::kMaster},
                                                              {'i', digital::kInvert},
                                                              {'m', digital::kMode},
                                                              {'p', digital::kPulseWidth},
                                                              {'e', digital::kEncoder}});
  ExpectLayout<digital::ScanMatrixByte>("_______s", {{'s', digital::kScanMatrix}});
}

TEST(DigitalBlock, TravelsAsTheBoardHoldsIt) {
  std::vector<std::uint8_t> wire(48);
  wire[0] = 0x27;   // pulse, invert, master, on
  wire[1] = 0xFF;   // 2550 ms
  wire[2] = 0x00;   // no encoder
  wire[45] = 0x49;  // rotary, a bit that is kept, on
  wire[46] = 0x19;  // 250 ms
  wire[47] = 0xA3;  // bits that are kept, GRAY 4X
  auto block = BlockOf<digital::Block>(wire);
  EXPECT_EQ(block.Get(0, digital::kMode), 2U);
  EXPECT_EQ(block.Get(0, digital::kInvert), 1U);
  EXPECT_EQ(block.Get(0, digital::kMaster), 1U);
  EXPECT_EQ(block.Get(0, digital::kOn), 1U);
  EXPECT_EQ(block.Get(0, digital::kPulseWidth), 255U);
  EXPECT_EQ(block.Get(0, digital::kEncoder), 0U);
  EXPECT_EQ(block.Get(15, digital::kMode), 4U);
  EXPECT_EQ(block.Get(15, digital::kMaster), 0U);
  EXPECT_EQ(block.Get(15, digital::kPulseWidth), 25U);
  EXPECT_EQ(block.Get(15, digital::kEncoder), 3U);

  block.Set(15, digital::kOn, 0);
  block.Set(15, digital::kMaster, 1);
  block.Set(15, digital::kMode, 1);
  block.Set(15, digital::kPulseWidth, 0);
  block.Set(15, digital::kEncoder, 2);
  wire[45] = 0x1A;  // toggle, the kept bit, master
  wire[46] = 0x00;
  wire[47] = 0xA2;  // the kept bits, GRAY 2X
  EXPECT_EQ(WireOf(block), wire);
}

}  // namespace quillon::testing
