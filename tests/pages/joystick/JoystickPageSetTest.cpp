// SPDX-License-Identifier: MIT
#include <gmock/gmock.h>

#include <QCheckBox>
#include <QComboBox>
#include <QSpinBox>

#include "pages/common/CSettingsPage.h"
#include "pages/joystick/CJoystickPageSet.h"
#include "testing/OwnFolders.h"
#include "testing/pages/SimProgram.h"
#include "widgets/CGridCtrl.h"
#include "widgets/CStatusLed.h"

namespace quillon::testing {
namespace {

using ::testing::ElementsAreArray;

// What a user chooses in the first, second and so on grid of a tab.
struct Edit {
  int tab;
  int grid;
  int row, column;
  const char* text;  // null: a click
};

struct Family {
  const char* name;
  BoardFamily family;
  std::uint16_t product_id;
  std::vector<std::string> tabs;
  std::vector<int> updates;  // the commands that store the factory settings of the whole board
  std::vector<Edit> edits;
};

const std::vector<Family>& Families() {
  static const std::vector<Family> families{
      {"full controller",
       BoardFamily::kJoystick,
       0x0910,
       {"Device Configuration", "Analog Channels", "Axis Tweaking", "Digital Channels",
        "HAT Channels", "Expansion Port"},
       {0x0D, 0x16, 0x23, 0x0E, 0x0F, 0x10},
       {{1, 0, 2, 11, nullptr},
        {1, 0, 15, 13, "9 Bits"},
        {3, 0, 2, 4, "Rotary"},
        {3, 0, 15, 6, "GRAY 4X - A"},
        {3, 0, 5, 5, "200"},
        {3, 0, 16, 2, nullptr},
        {4, 0, 1, 2, "Digital"},
        {4, 0, 2, 2, "ORB : Shifter Display"},
        {4, 1, 8, 1, "HI"}}},
      {"small controller",
       BoardFamily::kSmallJoystick,
       0x0920,
       {"Device Configuration", "Analog Channels", "Axis Tweaking", "Digital Channels",
        "HAT Channels"},
       {0x0D, 0x23, 0x0E, 0x0F},
       {{1, 0, 8, 12, "0"},
        {3, 0, 1, 1, nullptr},
        {3, 0, 16, 4, "Momentary"},
        {3, 0, 16, 5, "255"},
        {4, 0, 2, 2, "Digital"}}},
      {"scan matrix controller",
       BoardFamily::kScanMatrix,
       0x0710,
       {"Device Configuration", "Digital Channels", "Expansion Port"},
       {0x0E, 0x18, 0x10},
       {{1, 0, 64, 3, nullptr},
        {1, 0, 60, 2, nullptr},
        {1, 0, 43, 5, "GRAY 1X - A"},
        {1, 0, 59, 4, "Rotary"},
        {1, 0, 63, 6, "Button 64"},
        {1, 0, 1, 7, "Button 1"},
        {1, 0, 63, 8, nullptr}}}};
  return families;
}

// All that the pages of a set show.
std::vector<std::string> ShownBySet(CJoystickPageSet& pages) {
  std::vector<std::string> shown;
  for (int tab = 1; tab < pages.count(); ++tab) {
    const auto more = ShownBy(*pages.Page(tab));
    shown.insert(shown.end(), more.begin(), more.end());
  }
  return shown;
}

// Pages without a grid: an axis and the expansion port.
void EditForms(CJoystickPageSet& pages) {
  pages.EnablePages(false, true);
  for (int tab = 1; tab < pages.count(); ++tab) {
    if (auto* const number = pages.Page(tab)->findChild<QSpinBox*>()) number->setValue(33);
    for (auto* const box : pages.Page(tab)->findChildren<QCheckBox*>()) {
      if (box->isEnabled() && !box->accessibleName().endsWith("Calibrate")) box->click();
    }
    auto* const module = pages.Page(tab)->findChild<QComboBox*>();
    if (module != nullptr) module->setCurrentText("Zephyr Card");
  }
}

void PressOnEveryPage(CJoystickPageSet& pages, const QString& button, const char* origin) {
  pages.EnablePages(false, true);
  for (int tab = 1; tab < pages.count(); ++tab) {
    Button(*pages.Page(tab), button).click();
    EXPECT_FALSE(Lamp(*pages.Page(tab), "Error").IsLit()) << button.toStdString() << ' ' << tab;
    EXPECT_TRUE(OriginOf(*pages.Page(tab)).startsWith(origin))
        << button.toStdString() << ' ' << tab;
  }
}

// The commands that write settings, in the order in which they come while `action` runs; of the
// packets of one block the first.
std::vector<int> UpdatesDuring(FaultyLibrary& library, const std::function<void()>& action) {
  std::vector<int> commands;
  for (const int command : {0x0D, 0x16, 0x23, 0x0E, 0x0F, 0x10, 0x18}) {
    library.BeforeWrite({.command = static_cast<std::uint8_t>(command)},
                        [&, command] { commands.push_back(command); });
  }
  action();
  library.DropUnstruck();
  return commands;
}

}  // namespace

TEST(JoystickPageSet, LoadsTheDefaultsOfItsOwnPagesAlsoAfterAFailure) {
  for (const Family& family : Families()) {
    SCOPED_TRACE(family.name);
    SimProgram program(family.product_id);
    CJoystickPageSet pages(program.fixture.Context(), family.family);
    std::vector<std::string> tabs;
    for (int tab = 0; tab < pages.count(); ++tab) tabs.push_back(pages.tabText(tab).toStdString());
    EXPECT_THAT(tabs, ElementsAreArray(family.tabs));

    EXPECT_THAT(UpdatesDuring(program.library, [&] { pages.LoadDeviceDefaults(); }),
                ElementsAreArray(family.updates));

    program.fixture.prompts.ExpectMessage("Load device defaults settings failed!", "Load Defaults",
                                          UserPrompts::Icon::kError);
    auto but_the_second_block = family.updates;
    if (family.family != BoardFamily::kSmallJoystick) {
      but_the_second_block.erase(but_the_second_block.begin() + 1);
    }
    EXPECT_THAT(UpdatesDuring(program.library,
                              [&] {
                                program.library.FailRead({});
                                pages.LoadDeviceDefaults();
                              }),
                ElementsAreArray(but_the_second_block))
        << "the first page stops at its first block, the others are sent";
  }
}

TEST(JoystickPageSet, TipsOfTheSmallControllerSpeakOfNoChannelThatItLacks) {
  SimProgram program(0x0920);
  CJoystickPageSet pages(program.fixture.Context(), BoardFamily::kSmallJoystick);
  QString tips;
  for (int tab = 1; tab < pages.count(); ++tab) {
    for (const auto* grid : pages.Page(tab)->findChildren<CGridCtrl*>()) {
      for (int i = 0; i + 1 < grid->Columns(); ++i) {
        tips += grid->model()->headerData(i, Qt::Horizontal, Qt::ToolTipRole).toString();
      }
    }
  }
  EXPECT_THAT(tips.toStdString(),
              ::testing::Not(::testing::ContainsRegex("ncremental|FALCO|the analog|13")));
}

TEST(JoystickPageSet, BoardKeepsWhatWasUpdatedWhenTheProgramRestarts) {
  for (const Family& family : Families()) {
    SCOPED_TRACE(family.name);
    const sim::BusOptions options{.state_folder = OwnFolders::Root() / family.name, .latency = {}};
    std::vector<std::string> defaults, updated;
    {
      SimProgram program(family.product_id, options);
      CJoystickPageSet pages(program.fixture.Context(), family.family);
      pages.LoadDeviceDefaults();
      defaults = ShownBySet(pages);
      for (const Edit& edit : family.edits) {
        CGridCtrl& grid = *pages.Page(edit.tab)->findChildren<CGridCtrl*>().at(edit.grid);
        if (edit.text == nullptr) {
          grid.Click(edit.row, edit.column);
        } else {
          grid.Enter(edit.row, edit.column, edit.text);
        }
      }
      EditForms(pages);
      PressOnEveryPage(pages, "Update", "Stored in ");
      updated = ShownBySet(pages);
    }
    SimProgram program(family.product_id, options);
    CJoystickPageSet pages(program.fixture.Context(), family.family);
    EXPECT_THAT(ShownBySet(pages), ElementsAreArray(defaults))
        << "a new page shows the factory settings";
    PressOnEveryPage(pages, "Retrieve", "Retrieved from ");
    EXPECT_THAT(ShownBySet(pages), ElementsAreArray(updated));
    EXPECT_NE(updated, defaults);
  }
}

}  // namespace quillon::testing
