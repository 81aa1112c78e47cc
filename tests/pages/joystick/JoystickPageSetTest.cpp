// SPDX-License-Identifier: MIT
#include <gmock/gmock.h>

#include "pages/common/CSettingsPage.h"
#include "pages/joystick/CJoystickPageSet.h"
#include "testing/pages/SimProgram.h"
#include "widgets/CGridCtrl.h"

namespace quillon::testing {
namespace {

constexpr auto kFull = BoardFamily::kJoystick;
constexpr auto kSmall = BoardFamily::kSmallJoystick;
constexpr auto kMatrix = BoardFamily::kScanMatrix;

// The commands that write settings, in the order in which they come while the defaults are loaded;
// of the packets of one block the first.
std::string UpdatesOfDefaults(FaultyLibrary& library, CJoystickPageSet& pages) {
  std::string commands;
  for (const int command : {0x0D, 0x16, 0x23, 0x0E, 0x0F, 0x10, 0x18}) {
    library.BeforeWrite({.command = static_cast<std::uint8_t>(command)}, [&, command] {
      commands += QStringLiteral("%1 ").arg(command, 2, 16, QChar(u'0')).toStdString();
    });
  }
  pages.LoadDeviceDefaults();
  library.DropUnstruck();
  return commands;
}

}  // namespace

TEST(JoystickPageSet, LoadsTheDefaultsOfItsOwnPagesAlsoAfterAFailure) {
  const struct {
    std::uint16_t product_id;
    BoardFamily family;
    const char* tabs;
    const char* updates;
    // The first page stops at its first block, the others are sent.
    const char* after_a_failure;
  } cases[]{
      {0x0910, kFull,
       "Device Configuration, Analog Channels, Axis Tweaking, Digital Channels, HAT Channels, "
       "Expansion Port",
       "0d 16 23 0e 0f 10 ", "0d 23 0e 0f 10 "},
      {0x0920, kSmall,
       "Device Configuration, Analog Channels, Axis Tweaking, Digital Channels, HAT Channels",
       "0d 23 0e 0f ", "0d 23 0e 0f "},
      {0x0710, kMatrix, "Device Configuration, Digital Channels, Expansion Port", "0e 18 10 ",
       "0e 10 "},
  };
  for (const auto& c : cases) {
    SCOPED_TRACE(c.tabs);
    SimProgram program(c.product_id);
    CJoystickPageSet pages(program.fixture.Context(), c.family);
    QStringList tabs;
    for (int tab = 0; tab < pages.count(); ++tab) tabs << pages.tabText(tab);
    EXPECT_EQ(tabs.join(QStringLiteral(", ")), c.tabs);

    EXPECT_EQ(UpdatesOfDefaults(program.library, pages), c.updates);
    program.fixture.prompts.ExpectMessage("Load device defaults settings failed!", "Load Defaults",
                                          UserPrompts::Icon::kError);
    program.library.FailRead({});
    EXPECT_EQ(UpdatesOfDefaults(program.library, pages), c.after_a_failure);
  }
}

TEST(JoystickPageSet, TipsOfTheSmallControllerSpeakOfNoChannelThatItLacks) {
  SimProgram program(0x0920);
  CJoystickPageSet pages(program.fixture.Context(), kSmall);
  QString tips;
  for (int tab = 1; tab < pages.count(); ++tab) {
    for (const auto* grid : pages.Page(tab)->findChildren<CGridCtrl*>()) {
      for (int i = 0; i + 1 < grid->Columns(); ++i) {
        tips += grid->model()->headerData(i, Qt::Horizontal, Qt::ToolTipRole).toString();
      }
    }
  }
  for (const char* lacks : {"ncremental", "FALCO", "the analog", "13"})
    EXPECT_THAT(tips.toStdString(), ::testing::Not(::testing::HasSubstr(lacks)));
}

}  // namespace quillon::testing
