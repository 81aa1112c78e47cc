// SPDX-License-Identifier: MIT
#include <gmock/gmock.h>

#include "pages/common/CSettingsPage.h"
#include "pages/nodes/CSpiControllerPageSet.h"
#include "testing/OwnFolders.h"
#include "testing/pages/SimProgram.h"
#include "widgets/CGridCtrl.h"
#include "widgets/CStatusLed.h"

namespace quillon::testing {
namespace {

struct Program : SimProgram {
  Program() : SimProgram(0x1500, {.state_folder = OwnFolders::Root() / "boards", .latency = {}}) {
    pages.EnablePages(false, true);
  }

  CSpiControllerPageSet pages{fixture.Context()};
  CSettingsPage& page = *pages.Page(1);
  CGridCtrl& grid = Grid(page);
  CStatusLed& error = Lamp(page, "Error");
};

}  // namespace

TEST(SpiConfig, IsKeptByTheBoard) {
  {
    Program program;
    program.pages.LoadDeviceDefaults();
    program.grid.Enter(1, 1, "HI");
    program.grid.Enter(8, 2, "CS Line LOW");
    program.page.Update();
  }
  Program program;
  program.page.Retrieve();
  EXPECT_EQ(RowText(program.grid, 1), "CH 1: HI=3 CS Line HIGH=1");
  EXPECT_EQ(RowText(program.grid, 7), "CH 7: MID=2 CS Line HIGH=1");
  EXPECT_EQ(RowText(program.grid, 8), "CH 8: MID=2 CS Line LOW=0");
}

TEST(SpiConfig, KeepsTheErrorLampLitUntilARetrieve) {
  Program program;
  program.library.AnswerWithEcho({}, 0xEE);
  EXPECT_TRUE(program.page.StoreOnBoard()) << "it was answered";
  program.page.Update();
  EXPECT_TRUE(OriginOf(program.page).startsWith("Stored in"));
  EXPECT_TRUE(program.error.IsBlinking());
  program.page.Retrieve();
  EXPECT_FALSE(program.error.IsLit());
  program.library.FailRead({});
  EXPECT_FALSE(program.page.StoreOnBoard());
  EXPECT_TRUE(program.error.IsBlinking());
}

}  // namespace quillon::testing
