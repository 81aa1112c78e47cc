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

  void Press(const char* button) { Button(page, button).click(); }

  CSpiControllerPageSet pages{fixture.Context()};
  CSettingsPage& page = *pages.Page(1);
  CGridCtrl& grid = Grid(page);
};

}  // namespace

TEST(SpiConfig, IsKeptByTheBoard) {
  {
    Program program;
    program.pages.LoadDeviceDefaults();
    program.Press("Retrieve");
    for (int row = 1; row <= 8; ++row) {
      EXPECT_EQ(RowText(program.grid, row), "CH " + std::to_string(row) + ": MID=2 CS Line HIGH=1");
    }
    program.grid.Enter(1, 1, "HI");
    program.grid.Enter(8, 1, "OFF");
    program.grid.Enter(8, 2, "CS Line LOW");
    program.Press("Update");
  }
  Program program;
  program.Press("Retrieve");
  EXPECT_EQ(RowText(program.grid, 1), "CH 1: HI=3 CS Line HIGH=1");
  EXPECT_EQ(RowText(program.grid, 8), "CH 8: OFF=0 CS Line LOW=0");
}

TEST(SpiConfig, KeepsTheErrorLampLitUntilARetrieve) {
  Program program;
  program.library.AnswerWithEcho({}, 0xEE);
  EXPECT_TRUE(program.page.StoreOnBoard()) << "it was answered";
  for (const char* const button : {"Update", "Update"}) {
    EXPECT_TRUE(Lamp(program.page, "Error").IsBlinking());
    program.Press(button);
    EXPECT_TRUE(OriginOf(program.page).startsWith("Stored in"));
  }
  EXPECT_TRUE(Lamp(program.page, "Error").IsBlinking());
  program.Press("Retrieve");
  EXPECT_FALSE(Lamp(program.page, "Error").IsLit());
  program.library.FailRead({});
  EXPECT_FALSE(program.page.StoreOnBoard());
  EXPECT_TRUE(Lamp(program.page, "Error").IsBlinking());
}

}  // namespace quillon::testing
