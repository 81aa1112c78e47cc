// SPDX-License-Identifier: MIT
#include <gmock/gmock.h>

#include <QComboBox>
#include <QHeaderView>
#include <QLabel>

#include "pages/common/CNumberBox.h"
#include "pages/common/CSettingsPage.h"
#include "pages/digital/CDigitalPageSets.h"
#include "testing/pages/SimProgram.h"
#include "widgets/CGridCtrl.h"
#include "widgets/CStatusLed.h"

namespace quillon::testing {
namespace {

constexpr int kMode = 3, kPulse = 4, kRotary = 5;

template <typename PageSet, std::uint16_t ProductId>
struct Program : SimProgram {
  Program() : SimProgram(ProductId) { pages.EnablePages(false, true); }

  void Press(const char* button) { Button(page, button).click(); }

  PageSet pages{fixture.Context()};
  CSettingsPage& page = *pages.Page(1);
  CGridCtrl& grid = Grid(page);
  QComboBox& master = *page.template findChild<QComboBox*>();
};
using Ports = Program<CDigitalPortsPageSet, 0x0510>;
struct Banks : Program<CDigitalInputBankPageSet, 0x0520> {
  CNumberBox& bank = *page.findChild<CNumberBox*>();
};

}  // namespace

TEST(DigitalPorts, KeepTheTitleThatTheOneRotaryPortLeaves) {
  Ports program;
  EXPECT_EQ(program.grid.Text(0, kMode), "    Mode    ");
  program.grid.Enter(8, kMode, "Rotary");
  EXPECT_EQ(program.grid.Text(0, kMode), "Normal") << "intended";
  program.page.LoadDefaults();
  EXPECT_EQ(program.grid.Text(0, kMode), "Normal") << "stays";
}

TEST(InputBanks, AreNumberedWhenTheyAreRetrieved) {
  Banks program;
  program.pages.setCurrentIndex(1);
  program.pages.show();
  const int width = program.grid.verticalHeader()->width();
  EXPECT_EQ(program.grid.Text(32, 0), "");
  program.pages.LoadDeviceDefaults();
  EXPECT_EQ(RowText(program.grid, 32), "Input 32: ON Normal=0 0=0 None=0");
  program.bank.setValue(15);
  EXPECT_EQ(
      std::ranges::count(program.page.findChildren<QLabel*>(), "Inputs 481 to 512", &QLabel::text),
      1);
  program.master.setCurrentText("256");
  program.grid.Enter(3, kRotary, "GRAY 2X - A");
  program.fixture.prompts.ExpectMessage("Enter a value between 0 - 255", "Invalid Pulse Width",
                                        UserPrompts::Icon::kExclamation);
  program.grid.Enter(31, kPulse, "256");
  program.grid.Enter(32, kPulse, "255");
  program.Press("Update");
  EXPECT_EQ(program.grid.Text(1, 0), "Input 1") << "not yet";
  program.page.LoadDefaults();
  program.Press("Retrieve");
  EXPECT_EQ(program.bank.value(), 15);
  EXPECT_EQ(program.master.currentText(), "256");
  EXPECT_EQ(RowText(program.grid, 4), "Input 484: ON Normal=0 0=0 GRAY 2X - B=2");
  EXPECT_EQ(RowText(program.grid, 31), "Input 511: ON Normal=0 0=0 None=0");
  EXPECT_EQ(RowText(program.grid, 32), "Input 512: ON Normal=0 255=255 None=0");
  EXPECT_GT(program.grid.verticalHeader()->width(), width) << "has room for the longer names";
}

TEST(InputBanks, TakeTheBankAndLeaveTheRowsWhenTheInputsDoNotCome) {
  Banks program;
  program.library.FailRead({.command = 0x12});
  program.Press("Retrieve");
  EXPECT_EQ(program.bank.value(), 2);
  EXPECT_EQ(program.master.currentText(), "5");
  EXPECT_EQ(RowText(program.grid, 1), "Input 1: ON Normal=0 0=0 None=0");
  EXPECT_TRUE(OriginOf(program.page).startsWith("Retrieved in part only"));
}

// The board's answer to the bank is not looked at; its inputs follow and decide.
TEST(InputBanks, AreStoredWhateverBecomesOfTheBank) {
  const struct {
    const char* name;
    std::uint8_t command;
    bool answered, lamp, done;
  } cases[]{{"bank refused", 0x10, true, false, true},
            {"bank lost", 0x10, false, false, true},
            {"inputs refused", 0x0E, true, true, true}};
  for (const auto& c : cases) {
    SCOPED_TRACE(c.name);
    Banks program;
    const FaultyLibrary::Which last{.nth = c.command == 0x10 ? 1 : 2, .command = c.command};
    c.answered ? program.library.AnswerWithEcho(last, 0xEE) : program.library.FailRead(last);
    EXPECT_EQ(program.page.StoreOnBoard(), c.done);
    EXPECT_EQ(Lamp(program.page, "Error").IsLit(), c.lamp);
    EXPECT_TRUE(OriginOf(program.page).startsWith("Stored in part only"));
  }
}

}  // namespace quillon::testing
