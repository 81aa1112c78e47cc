// SPDX-License-Identifier: MIT
//
// A trace that a user sent in, played against the real program.
#include <gmock/gmock.h>

#include <QLabel>
#include <fstream>
#include <sstream>

#include "app/CProblemLine.h"
#include "app/MainFixture.h"
#include "devlink/LoadedLibrary.h"
#include "devlink/TracedLibrary.h"
#include "pages/common/CPageSet.h"
#include "pages/common/CSettingsPage.h"
#include "sim/Bus.h"
#include "testing/OwnFolders.h"
#include "testing/pages/PageFixture.h"
#include "widgets/CGridCtrl.h"

namespace quillon::testing {
namespace {

// What the user did: started, and retrieved the analog channels of the first board.
CSettingsPage& RetrieveAnalog(MainFixture& fixture) {
  fixture.window.Initialise();
  CSettingsPage* const page = fixture.window.ShownPageSet()->Page(1);
  page->Retrieve();
  return *page;
}

std::string Shown(const CSettingsPage& page) {
  std::string rows;
  for (int row = 1; row < Grid(page).Rows(); ++row) rows += RowText(Grid(page), row) + '\n';
  return rows + OriginOf(page).toStdString();
}

TEST(Replay, ShowsInTheWindowWhatTheUserSawAndWhereTheProgramLeavesTheTrace) {
  const std::string file = (OwnFolders::Root() / "trace.txt").string();
  std::string seen;
  {
    sim::Bus bus(sim::DefaultRig(), {.latency = {}});
    bus.Find("joystick-1")->Block("analog_a")[0] ^= 0x01;
    std::ofstream trace(file);
    TracedLibrary traced(
        bus, [&](auto text) { return trace << text, std::nullopt; }, [] { return 0.0; });
    MainFixture fixture(traced);
    seen = Shown(RetrieveAnalog(fixture));
  }
  qputenv("QUILLON_REPLAY", QByteArray::fromStdString(file));
  const auto library = std::get<std::unique_ptr<HidLibrary>>(LoadLibraryFile(REPLAY_LIBRARY));
  MainFixture fixture(*library);
  CSettingsPage& page = RetrieveAnalog(fixture);
  EXPECT_EQ(Shown(page), seen);
  EXPECT_THAT(seen, ::testing::HasSubstr("Retrieved from"));

  page.Update();
  fixture.window.Redetect();
  std::string problem;
  for (const auto* const label : fixture.window.findChild<CProblemLine*>()->findChildren<QLabel*>())
    problem += label->text().toStdString();
  EXPECT_THAT(problem, ::testing::HasSubstr("trace")) << "which the user's program did not send";
}

}  // namespace
}  // namespace quillon::testing
