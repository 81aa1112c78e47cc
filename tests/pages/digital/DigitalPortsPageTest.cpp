// SPDX-License-Identifier: MIT
#include <gmock/gmock.h>

#include <QComboBox>
#include <QHeaderView>
#include <QLabel>

#include "pages/common/CNumberBox.h"
#include "pages/digital/CDigitalInputBankPage.h"
#include "pages/digital/CDigitalPageSets.h"
#include "pages/digital/CDigitalPortsPage.h"
#include "testing/OwnFolders.h"
#include "testing/pages/SimProgram.h"
#include "widgets/CGridCtrl.h"
#include "widgets/CStatusLed.h"

namespace quillon::testing {
namespace {

constexpr int kMode = 3, kPulse = 4;

template <typename PageSet>
struct Program : SimProgram {
  explicit Program(std::uint16_t product_id, const char* state = "boards")
      : SimProgram(product_id, {.state_folder = OwnFolders::Root() / state, .latency = {}}),
        pages(fixture.Context()),
        page(*pages.Page(1)),
        grid(Grid(page)) {
    pages.EnablePages(false, true);
  }

  void Press(const char* button) { Button(page, button).click(); }
  QComboBox& Master() { return Named<QComboBox>(page, QStringLiteral("Master Switch")); }
  CNumberBox& Bank() { return Named<CNumberBox>(page, QStringLiteral("Bank")); }
  bool Says(const char* text) {
    return std::ranges::any_of(page.template findChildren<QLabel*>(),
                               [&](const QLabel* label) { return label->text() == text; });
  }

  PageSet pages;
  CSettingsPage& page;
  CGridCtrl& grid;
};
using Ports = Program<CDigitalPortsPageSet>;
using Banks = Program<CDigitalInputBankPageSet>;

}  // namespace

TEST(DigitalPorts, AreKeptByTheBoardWithTheOneRotaryPort) {
  std::vector<std::string> updated;
  {
    Ports program(0x0510);
    program.pages.LoadDeviceDefaults();
    program.Press("Retrieve");
    EXPECT_EQ(program.Master().currentText(), "None");
    EXPECT_EQ(RowText(program.grid, 8), "Port 8: ON Normal=0 None=0");
    EXPECT_EQ(program.Master().count(), 257);
    program.Master().setCurrentText("256");
    program.grid.Enter(2, kMode, "Toggle");
    program.grid.Click(2, 2);
    program.grid.Enter(5, kMode, "Rotary");
    EXPECT_EQ(RowText(program.grid, 2), "Port 2: ON Invert Normal=0 None=0");
    program.grid.Enter(5, 4, "GRAY 4X");
    program.Press("Update");
    updated = ShownBy(program.page);
    EXPECT_EQ(program.grid.Text(0, kMode), "Normal") << "intended";
    program.Press("Retrieve");
    program.page.LoadDefaults();
    EXPECT_EQ(program.grid.Text(0, kMode), "Normal") << "stays";
    EXPECT_EQ(program.grid.Background(5, 1), qRgb(220, 220, 220)) << "no row is the clicked one";
  }
  Ports program(0x0510);
  EXPECT_EQ(program.grid.Text(0, kMode), "    Mode    ");
  program.Press("Retrieve");
  EXPECT_EQ(RowText(program.grid, 5), "Port 5: ON Rotary=3 GRAY 4X=3");
  for (std::string& row : updated) {
    if (const auto code = row.find("Rotary=2"); code != std::string::npos) row[code + 7] = '3';
  }
  EXPECT_EQ(ShownBy(program.page), updated);
}

TEST(InputBanks, AreKeptByTheBoardAndNumberedWhenTheyAreRetrieved) {
  {
    Banks program(0x0520);
    EXPECT_EQ(program.grid.Text(32, 0), "");
    program.pages.LoadDeviceDefaults();
    EXPECT_EQ(RowText(program.grid, 32), "Input 32: ON Normal=0 0=0 None=0");
    program.Bank().setValue(15);
    EXPECT_TRUE(program.Says("Inputs 481 to 512"));
    EXPECT_EQ(program.grid.Text(1, 0), "Input 1") << "not yet";
    program.grid.Enter(4, kMode, "Rotary");
    program.grid.Enter(3, 5, "GRAY 2X - A");
    program.fixture.prompts.ExpectMessage("Enter a value between 0 - 255", "Invalid Pulse Width",
                                          UserPrompts::Icon::kExclamation);
    program.grid.Enter(31, kPulse, "256");
    program.grid.Enter(32, kPulse, "255");
    program.Press("Update");
    EXPECT_EQ(program.grid.Text(1, 0), "Input 1") << "an update numbers nothing";
  }
  Banks program(0x0520);
  program.pages.setCurrentIndex(1);
  program.pages.show();
  const int width = program.grid.verticalHeader()->width();
  program.Press("Retrieve");
  EXPECT_EQ(program.Bank().value(), 15);
  EXPECT_EQ(RowText(program.grid, 3), "Input 483: ON Rotary=4 0=0 GRAY 2X - A=2");
  EXPECT_EQ(RowText(program.grid, 4), "Input 484: ON Rotary=4 0=0 GRAY 2X - B=2");
  EXPECT_EQ(RowText(program.grid, 31), "Input 511: ON Normal=0 0=0 None=0");
  EXPECT_EQ(RowText(program.grid, 32), "Input 512: ON Normal=0 255=255 None=0");
  EXPECT_GT(program.grid.verticalHeader()->width(), width) << "has room for the longer names";
  program.page.LoadDefaults();
  EXPECT_EQ(program.grid.Text(1, 0), "Input 1");
}

TEST(InputBanks, TakeTheBankAndLeaveTheRowsWhenTheInputsDoNotCome) {
  Banks program(0x0520);
  program.library.FailRead({.command = 0x12});
  program.Press("Retrieve");
  EXPECT_EQ(program.Bank().value(), 2);
  EXPECT_EQ(program.Master().currentText(), "5");
  EXPECT_EQ(program.grid.Text(1, 0), "Input 1");
  EXPECT_EQ(RowText(program.grid, 3), "Input 3: ON Normal=0 0=0 None=0");
  EXPECT_TRUE(OriginOf(program.page).startsWith("Retrieved in part only"));
}

// The board's answer to the bank is not looked at; its inputs follow and decide.
TEST(InputBanks, AreStoredWhateverBecomesOfTheBank) {
  const struct {
    const char* name;
    std::uint8_t command;
    bool transported;
    const char* origin;
    bool lamp;
    bool done;  // for "Load default settings"
  } cases[]{{"bank refused", 0x10, true, "Stored in Input", false, true},
            {"bank lost", 0x10, false, "Stored in part only", false, true},
            {"inputs refused", 0x0E, true, "Stored in part only", true, true},
            {"inputs lost", 0x0E, false, "Stored in part only", true, false}};
  for (const auto& c : cases) {
    SCOPED_TRACE(c.name);
    Banks program(0x0520, c.name);
    const FaultyLibrary::Which last{.nth = c.command == 0x10 ? 1 : 2, .command = c.command};
    c.transported ? program.library.AnswerWithEcho(last, 0xEE) : program.library.FailRead(last);
    EXPECT_EQ(program.page.StoreOnBoard(), c.done);
    EXPECT_EQ(Lamp(program.page, "Error").IsLit(), c.lamp);
    EXPECT_TRUE(OriginOf(program.page).startsWith(c.origin))
        << OriginOf(program.page).toStdString();
  }
}

}  // namespace quillon::testing
