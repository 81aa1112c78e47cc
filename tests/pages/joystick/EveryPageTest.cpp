// SPDX-License-Identifier: MIT
#include <gmock/gmock.h>

#include <QCheckBox>
#include <QSpinBox>

#include "pages/common/CSettingsPage.h"
#include "pages/joystick/CJoystickPageSet.h"
#include "testing/pages/SimProgram.h"
#include "widgets/CEditMark.h"
#include "widgets/CGridCtrl.h"
#include "widgets/CStatusLed.h"

// What holds for every settings page, whatever it is about.
namespace quillon::testing {
namespace {

struct Family {
  BoardFamily family;
  std::uint16_t product_id;
  const char* board;
};
constexpr Family kFamilies[]{{BoardFamily::kJoystick, 0x0910, "joystick-1"},
                             {BoardFamily::kSmallJoystick, 0x0920, "compact-1"},
                             {BoardFamily::kScanMatrix, 0x0710, "matrix-1"}};

// A new page over a board as it left the factory.
struct OnePage {
  OnePage(const Family& family, int tab)
      : program(family.product_id),
        pages(program.fixture.Context(), family.family),
        page(*pages.Page(tab)) {
    pages.EnablePages(false, true);
  }

  // One edit, of what comes in the page's last exchange. The second one sets it back.
  void Edit() const {
    if (auto* const grid = page.findChild<CGridCtrl*>()) {
      for (int column = grid->Columns() - 1; column > 0; --column) {
        for (int row = grid->Rows() - 1; row > 0; --row) {
          if (grid->IsEnabledCell(row, column) && IsToggle(grid->Kind(row, column)))
            return grid->Click(row, column);
        }
      }
    }
    if (auto* const number = page.findChild<QSpinBox*>())
      return number->setValue(77 - number->value());
    page.findChild<QCheckBox*>()->click();
  }

  // How many cells and controls are marked as edited.
  int Marks() const {
    int marks = 0;
    for (const auto* const mark : page.findChildren<CEditMark*>()) marks += !mark->isHidden();
    for (const auto* const grid : page.findChildren<CGridCtrl*>()) {
      for (int row = 1; row < grid->Rows(); ++row) {
        for (int column = 1; column < grid->Columns(); ++column)
          marks += grid->IsMarked(row, column);
      }
    }
    return marks;
  }

  // The commands of the exchanges that a button leads to, one for each packet.
  std::vector<std::uint8_t> Press(const char* button) {
    std::vector<std::uint8_t> commands;
    for (int command = 0; command < 256; ++command) {
      const auto code = static_cast<std::uint8_t>(command);
      program.library.BeforeWrite({.command = code, .onwards = true},
                                  [&commands, code] { commands.push_back(code); });
    }
    Button(page, button).click();
    program.library.DropUnstruck();
    return commands;
  }

  SimProgram program;
  CJoystickPageSet pages;
  CSettingsPage& page;
};

template <typename Claim>
void ForEveryPage(const Claim& claim) {
  for (const Family& family : kFamilies) {
    const int tabs = OnePage(family, 1).pages.count();
    for (int tab = 1; tab < tabs; ++tab) {
      SCOPED_TRACE(::testing::Message() << std::hex << family.product_id << ", tab " << tab);
      claim(family, tab);
    }
  }
}

}  // namespace

TEST(EveryPage, StopsAtTheExchangeThatFailsAndKeepsWhatItShows) {
  enum Fault { kWriteFails, kReadFails, kWrongEcho };
  ForEveryPage([](const Family& family, int tab) {
    for (const char* button : {"Retrieve", "Update"}) {
      const bool retrieve = button[0] == 'R';
      const auto commands = OnePage(family, tab).Press(button);
      ASSERT_FALSE(commands.empty());
      for (std::size_t n = 1; n <= commands.size(); ++n) {
        const bool last_of_block = n == commands.size() || commands[n] != commands[n - 1];
        const bool first_block = std::all_of(commands.begin(), commands.begin() + std::ptrdiff_t(n),
                                             [&](auto code) { return code == commands[0]; });
        for (const Fault fault : {kWriteFails, kReadFails, kWrongEcho}) {
          // A query leaves the judgement to its read, and a block to its last packet's echo.
          if ((fault == kWriteFails && retrieve) || (fault == kWrongEcho && !last_of_block))
            continue;
          SCOPED_TRACE(::testing::Message() << button << ", packet " << n << ", fault " << fault);
          OnePage one(family, tab);
          Button(one.page, "Retrieve").click();
          one.Edit();
          const auto before = ShownBy(one.page);
          const FaultyLibrary::Which nth{.nth = static_cast<int>(n)};
          if (fault == kWriteFails) one.program.library.FailWrite(nth);
          if (fault == kReadFails) one.program.library.FailRead(nth);
          if (fault == kWrongEcho) one.program.library.AnswerWithEcho(nth, 0xEE);
          EXPECT_EQ(one.Press(button).size(), n - (fault == kWriteFails)) << "and sends no more";
          EXPECT_TRUE(Lamp(one.page, "Error").IsBlinking());
          EXPECT_FALSE(Lamp(one.page, "Busy").IsLit());
          EXPECT_EQ(ShownBy(one.page), before);
          // A block that is refused at its end counts as not stored.
          const bool in_part = !first_block || (!retrieve && n > 1 && fault != kWrongEcho);
          const char* const origin = retrieve ? "Retrieved in part only" : "Stored in part only";
          EXPECT_TRUE(OriginOf(one.page).startsWith(in_part ? origin : "Retrieved from"));
          EXPECT_TRUE(OriginOf(one.page).endsWith("Edited since.")) << "the edit is still one";
          one.pages.ResetIndicators();
          EXPECT_FALSE(Lamp(one.page, "Error").IsLit() || Lamp(one.page, "Error").IsBlinking());
        }
      }
    }
  });
}

TEST(EveryPage, MarksAnEditUntilItIsSetBackOrStored) {
  ForEveryPage([](const Family& family, int tab) {
    const OnePage one(family, tab);
    const auto expect = [&](const char* origin, int marks) {
      EXPECT_TRUE(OriginOf(one.page).startsWith(origin)) << OriginOf(one.page).toStdString();
      EXPECT_EQ(OriginOf(one.page).endsWith("Edited since."), marks > 0);
      EXPECT_EQ(one.Marks(), marks);
    };
    one.Edit();
    expect("Not retrieved from the board yet.", 0);
    Button(one.page, "Retrieve").click();
    for (const int marks : {1, 0, 1}) {
      one.Edit();
      expect("Retrieved from", marks);
    }
    Button(one.page, "Update").click();
    expect("Stored in", 0);
  });
}

TEST(EveryPage, AsksBeforeDefaultsWhichItDoesNotSendAndDoesNothingWhileTheGateIsHeld) {
  ForEveryPage([](const Family& family, int tab) {
    OnePage one(family, tab);
    one.Edit();
    const auto edited = ShownBy(one.page);
    {
      const auto hold = one.program.fixture.link.gate.Enter();
      for (const char* const button : {"Retrieve", "Update", "Defaults"})
        EXPECT_TRUE(one.Press(button).empty()) << button;
    }
    EXPECT_FALSE(Lamp(one.page, "Error").IsLit());
    for (const bool yes : {false, true}) {
      EXPECT_EQ(ShownBy(one.page), edited);
      one.program.fixture.prompts.ExpectQuestion(
          "Are you sure you want to load the\r\ndefault settings for this page?", "Load Defaults",
          yes);
      EXPECT_TRUE(one.Press("Defaults").empty());
    }
    EXPECT_NE(ShownBy(one.page), edited);
  });
}

TEST(EveryPage, SendsBackTheBytesThatCame) {
  for (const Family& family : kFamilies) {
    SimProgram program(family.product_id);
    CJoystickPageSet pages(program.fixture.Context(), family.family);
    auto& blocks = program.bus.Find(family.board)->State().blocks;
    auto sent = blocks;
    if (sent.contains("expansion")) sent["expansion"][0] &= 1;  // the rest has no meaning
    // No damping; the bytes are always sent as 0.
    if (family.family == BoardFamily::kSmallJoystick) sent["hat"][1] = sent["hat"][3] = 0;
    for (int tab = 1; tab < pages.count(); ++tab) {
      pages.Page(tab)->Retrieve();
      pages.Page(tab)->Update();
      EXPECT_TRUE(OriginOf(*pages.Page(tab)).startsWith("Stored in")) << tab;
    }
    for (const auto& [name, bytes] : sent) EXPECT_EQ(blocks[name], bytes) << name;
  }
}

}  // namespace quillon::testing
