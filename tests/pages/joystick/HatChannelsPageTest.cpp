// SPDX-License-Identifier: MIT
#include <gmock/gmock.h>

#include "pages/joystick/CHatChannelsPage.h"
#include "testing/pages/TranscriptPage.h"
#include "widgets/CGridCtrl.h"

namespace quillon::testing {
namespace {

enum Column { kOn = 1, kMode = 2, kDamping = 1 };

std::string Retrieve(const std::string& data) {
  return "write 0 -> 0 : 00 00 00 00 13 *\nread 0 -> 0 : 13 " + data + " *\n";
}

std::string Update(const std::string& payload) {
  return "write 0 -> 0 : 00 00 00 00 0f 01 " + payload + " *\nread 0 -> 0 : 0f *\n";
}

struct Fixture : TranscriptGridPage<CHatChannelsPage> {
  explicit Fixture(BoardFamily family = BoardFamily::kJoystick)
      : TranscriptGridPage(*FindPage(family, "hat")) {}

  CGridCtrl& Damping() { return *page.findChildren<CGridCtrl*>().at(1); }
  std::string Modes() const {
    return (grid.Text(1, kMode) + " / " + grid.Text(2, kMode)).toStdString();
  }
  std::string DampingTexts() {
    QStringList texts;
    for (int row = 1; row <= 8; ++row) texts << Damping().Text(row, kDamping);
    return texts.join(u' ').toStdString();
  }
};

}  // namespace

TEST(HatChannels, ShowsTheBlockAndKeepsBitsThatItDoesNotEdit) {
  Fixture fixture;
  fixture.Press("Retrieve", Retrieve("a3 e4 58 1b"));
  EXPECT_EQ(fixture.Row(1), "HAT 1: ON Digital=1");
  EXPECT_EQ(fixture.Row(2), "HAT 2: FALCO=4");
  EXPECT_EQ(fixture.DampingTexts(), "OFF LO MID HI HI MID LO OFF");
  fixture.Press("Update", Update("a3 e4 58 1b"));

  fixture.grid.Click(1, kOn);
  fixture.grid.Enter(2, kMode, "Digital");
  fixture.Damping().Enter(5, kDamping, "MID");
  fixture.Damping().Enter(4, kDamping, "OFF");
  fixture.Press("Update", Update("a2 24 52 1a"));
}

// Not the inverse of what an update sends. Boards and their users rely on it: leave it alone.
TEST(HatChannels, ShowsTheModesThatBoardsReportByATableOfItsOwn) {
  const struct {
    const char* held;
    const char* modes;
  } cases[]{
      {"01 00 01 00", "POV / POV"},
      {"03 00 03 00", "Digital / Digital"},
      {"05 00 05 00", "Incremental / ORB : Shifter Display"},
      {"07 00 07 00", "ORB : 12-Bit DACs / ORB : Shifter Display"},  // as they were
      {"09 00 09 00", "FALCO / FALCO"},
      {"0b 00 0b 00", "TARN20-XY / ORB : Shifter Display"},
      {"0d 00 0d 00", "TARN20-XY / ORB : Shifter Display"},
      {"0f 00 0f 00", "ORB : 12-Bit DACs / ORB : Shifter Display"},
  };
  for (const auto& c : cases) {
    SCOPED_TRACE(c.held);
    Fixture fixture;
    fixture.grid.Enter(1, kMode, "ORB : 12-Bit DACs");
    fixture.grid.Enter(2, kMode, "ORB : Shifter Display");
    fixture.Press("Retrieve", Retrieve(c.held));
    EXPECT_EQ(fixture.Modes(), c.modes);
  }
  const struct {
    int hat;
    const char* mode;
    const char* sent;
  } updates[]{
      {1, "POV", "01 aa 01 aa"},         {1, "Digital", "03 aa 01 aa"},
      {1, "Incremental", "07 aa 01 aa"}, {1, "FALCO", "09 aa 09 aa"},
      {1, "TARN20-XY", "0d aa 01 aa"},   {1, "ORB : 12-Bit DACs", "0b aa 01 aa"},
      {2, "Digital", "01 aa 03 aa"},     {2, "ORB : Shifter Display", "01 aa 05 aa"},
  };
  for (const auto& c : updates) {
    SCOPED_TRACE(c.mode);
    Fixture fixture;
    fixture.grid.Enter(c.hat, kMode, c.mode);
    fixture.Press("Update", Update(c.sent));
  }
}

TEST(HatChannels, HaveAFalcoOnBothOrOnNeither) {
  const struct {
    std::vector<std::pair<int, const char*>> edits;
    const char* modes;
  } cases[]{
      {{{1, "FALCO"}}, "FALCO / FALCO"},
      {{{2, "FALCO"}}, "FALCO / FALCO"},
      {{{2, "FALCO"}, {2, "Digital"}}, "POV / Digital"},
      {{{1, "FALCO"}, {1, "TARN20-XY"}}, "TARN20-XY / POV"},
      {{{1, "Incremental"}, {2, "Digital"}}, "Incremental / Digital"},
  };
  for (const auto& c : cases) {
    Fixture fixture;
    for (const auto& [hat, mode] : c.edits) fixture.grid.Enter(hat, kMode, mode);
    EXPECT_EQ(fixture.Modes(), c.modes);
  }

  // A board that holds a lone one shows it until the next edit, of the damping too.
  for (const bool of_damping : {false, true}) {
    Fixture fixture;
    fixture.Press("Retrieve", Retrieve("09 00 03 00"));
    EXPECT_EQ(fixture.Modes(), "FALCO / Digital");
    fixture.grid.Click(1, kOn);
    EXPECT_EQ(fixture.Modes(), "FALCO / Digital");
    of_damping ? fixture.Damping().Enter(1, kDamping, "HI")
               : fixture.grid.Enter(2, kMode, "Digital");
    EXPECT_EQ(fixture.Modes(), "POV / Digital");
  }
}

TEST(HatChannels, SmallControllerHasInputsOnlyAndSendsNoDamping) {
  Fixture fixture(BoardFamily::kSmallJoystick);
  EXPECT_EQ(fixture.page.findChildren<CGridCtrl*>().size(), 1) << "no damping";
  fixture.grid.Enter(1, kMode, "Digital");
  fixture.Press("Retrieve", Retrieve("f0 e4 13 1b"));
  EXPECT_EQ(fixture.Modes(), "POV / Digital");
  fixture.Press("Update", Update("f0 00 13 00"));

  for (const char* unknown :
       {"05 00 05 00", "07 00 07 00", "09 00 09 00", "0b 00 0b 00", "0d 00 0d 00", "0f 00 0f 00"}) {
    SCOPED_TRACE(unknown);
    fixture.Press("Retrieve", Retrieve(unknown));
    EXPECT_EQ(fixture.Modes(), "POV / Digital");
  }
  fixture.grid.Enter(1, kMode, "Digital");
  fixture.Press("Update", Update("03 00 03 00"));
}

TEST(HatChannels, LoadsDefaults) {
  Fixture fixture;
  fixture.Press("Retrieve", Retrieve("06 e4 03 1b"));
  fixture.page.LoadDefaults();
  EXPECT_EQ(fixture.Row(1), "HAT 1: ON POV=0");
  EXPECT_EQ(fixture.Row(2), "HAT 2: ON POV=0");
  EXPECT_EQ(fixture.DampingTexts(), "MID MID MID MID MID MID MID MID");
}

}  // namespace quillon::testing
