// SPDX-License-Identifier: MIT
#include "settings/BlockLayout.h"
#include "settings/ExpansionBlock.h"

namespace quillon::testing {

TEST(ExpansionBlock, HasTheActiveBitInFrontOfTheModuleByte) {
  ExpectLayout<expansion::Block>(
      "uuuuuuua mmmmmmmm",
      {{'a', expansion::kActive}, {'u', expansion::kUnused}, {'m', expansion::kModule}});
}

}  // namespace quillon::testing
