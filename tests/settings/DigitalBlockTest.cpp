// SPDX-License-Identifier: MIT
#include "settings/BlockLayout.h"
#include "settings/DigitalBlock.h"

namespace quillon::testing {

const std::vector<DrawnField> kDigital{{'m', digital::kMode},       {'i', digital::kInvert},
                                       {'M', digital::kMaster},     {'o', digital::kOn},
                                       {'p', digital::kPulseWidth}, {'e', digital::kEncoder}};

TEST(DigitalBlock, HasEveryFieldInItsPlace) {
  ExpectLayout<digital::Block>("mmmm_iMo pppppppp ____eeee", kDigital);
  ExpectLayout<digital::ScanMatrixByte>("_______s", {{'s', digital::kScanMatrix}});
}

TEST(DigitalBlock, TravelsAsTheBoardHoldsIt) {
  Bytes wire(48);
  wire[0] = 0x27;   // pulse, invert, master, on
  wire[1] = 0xFF;   // 2550 ms
  wire[2] = 0x00;   // no encoder
  wire[45] = 0x49;  // rotary, a bit that is kept, on
  wire[46] = 0x19;  // 250 ms
  wire[47] = 0xA3;  // bits that are kept, GRAY 4X
  auto block = BlockOf<digital::Block>(wire);
  EXPECT_EQ(FieldsOf(block, 0, kDigital), "m2 i1 M1 o1 p255 e0");
  EXPECT_EQ(FieldsOf(block, 15, kDigital), "m4 i0 M0 o1 p25 e3");

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
