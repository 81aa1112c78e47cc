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

}  // namespace quillon::testing
