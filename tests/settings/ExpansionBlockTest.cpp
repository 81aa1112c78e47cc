// SPDX-License-Identifier: MIT
#include <gmock/gmock.h>

#include "settings/ExpansionBlock.h"
#include "settings/WalkingBit.h"

namespace quillon::testing {

TEST(ExpansionBlock, HasTheActiveBitInFrontOfTheModuleByte) {
  const NamedFields fields{{"active", expansion::kActive}, {"module", expansion::kModule}};
  const std::array<const char*, 16> expected{"0.active=1 ",
                                             "",  // unused from here to the end of the byte
                                             "",
                                             "",
                                             "",
                                             "",
                                             "",
                                             "",
                                             "0.module=1 ",
                                             "0.module=2 ",
                                             "0.module=4 ",
                                             "0.module=8 ",
                                             "0.module=16 ",
                                             "0.module=32 ",
                                             "0.module=64 ",
                                             "0.module=128 "};
  for (std::size_t bit = 0; bit < expected.size(); ++bit) {
    EXPECT_EQ(ShownOfBit<expansion::Block>(bit, fields), expected[bit]) << "bit " << bit;
  }
  EXPECT_THAT(WireOf<expansion::Block>(0, expansion::kUnused), ::testing::ElementsAre(0xFE, 0));
}

}  // namespace quillon::testing
