// SPDX-License-Identifier: MIT
#include "settings/SheetFixture.h"

namespace quillon::testing {

TEST(SpiSettings, TravelAsTheBoardHoldsThem) {
  const Page& page = PagesOf(BoardFamily::kSpi)[0];
  ExpectLayout(page, 0, "___mdddd", {{'m', "spi_mode", "channel"}, {'d', "damping", "channel"}});
  Sheet sheet(page);
  sheet.Retrieved(0, Bytes{0x1F, 0xE2, 0x01, 0x10, 0x04, 0x03, 0x00, 0x12});
  EXPECT_EQ(CodesOf(sheet, "channel", 1), "damping=3 spi_mode=1");
  EXPECT_EQ(CodesOf(sheet, "channel", 2), "damping=2");
  sheet.Edit(*sheet.Find("channel", 8, "spi_mode"), 0);
  sheet.Edit(*sheet.Find("channel", 8, "damping"), 1);
  EXPECT_EQ(sheet.Outgoing(0), (Bytes{0x13, 0xE2, 0x01, 0x10, 0x03, 0x03, 0x00, 0x01}));
  sheet.Forget();
  EXPECT_EQ(sheet.Outgoing(0), Bytes(8, 0x12)) << "the factory's";
}

}  // namespace quillon::testing
