// SPDX-License-Identifier: MIT
#include <gmock/gmock.h>

#include <QPlainTextEdit>

#include "pages/common/CSettingsPage.h"
#include "pages/nodes/CNodePortPageSet.h"
#include "pages/nodes/NodeBoards.h"
#include "testing/link/TranscriptLibrary.h"
#include "widgets/CGridCtrl.h"
#include "widgets/CStatusLed.h"

namespace quillon::testing {
namespace {

using ::testing::EndsWith;
using ::testing::StartsWith;

enum Tab { kInformation, kIoPort, kOutputs, kGlcd, kSpiDac };
constexpr int kPortB = 2, kPortC = 3, kPortJ = 10;
constexpr const char* kNotRetrieved = "Not retrieved from the board yet.";

struct Fixture : NodeBoards {
  CSettingsPage& Page(int tab) { return *pages.Page(tab); }
  std::string Origin(int tab) { return OriginOf(Page(tab)).toStdString(); }
  std::string Row(int tab, int row) { return RowText(Grid(Page(tab)), row); }
  std::string Report() const {
    return Named<QPlainTextEdit>(pages, "Report on the node").toPlainText().toStdString();
  }
  std::string EnabledTabs() const {
    QStringList titles;
    for (int tab = 0; tab < pages.count(); ++tab) {
      if (pages.isTabEnabled(tab)) titles << pages.tabText(tab);
    }
    return titles.join('|').toStdString();
  }
  void Press(int tab, const char* button) {
    Button(Page(tab), button).click();
    EXPECT_FALSE(Lamp(Page(tab), "Error").IsLit()) << button << ' ' << tab;
  }

  CNodePortPageSet pages{fixture.Context()};
};

}  // namespace

TEST(NodePortPageSet, OpensAtTheReportWhichDecidesAboutTheOtherTabs) {
  Fixture fixture;
  fixture.pages.ShowPort(kPortB);
  EXPECT_EQ(fixture.EnabledTabs(),
            "Node Information|I/O Port|Direct Output Mode|GLCD Mode|SPI / DAC Mode");
  EXPECT_EQ(fixture.Report(),
            "Node : 1\n\n  Node Loader Version : 1.00\n  Node Flash Version : 1.30\n");
  EXPECT_THAT(fixture.Origin(kIoPort), StartsWith("Retrieved from port B of Node"));
  EXPECT_EQ(fixture.Row(kIoPort, 1), "Port B: ON Output=0 Multiplexed=1");
  EXPECT_EQ(Grid(fixture.Page(kIoPort)).Rows(), 2);

  fixture.pages.setCurrentIndex(kSpiDac);
  fixture.pages.ShowPort(kPortJ);
  EXPECT_EQ(fixture.pages.currentIndex(), kInformation);

  // A node that needs an update. The tree shows a port from inside of a detection too.
  fixture.ChooseSecond();
  const auto hold = fixture.fixture.link.gate.Enter();
  fixture.pages.ShowPort(kPortC);
  EXPECT_EQ(fixture.EnabledTabs(), "Node Information");
  EXPECT_FALSE(fixture.pages.tabToolTip(kSpiDac).isEmpty());
  EXPECT_THAT(fixture.Report(), StartsWith("Node : 2\n\n"));
  EXPECT_THAT(fixture.Report(), EndsWith("\n  WARNING: NODE Firmware update required!\n"));
  EXPECT_THAT(fixture.Origin(kIoPort), StartsWith("Retrieved from port C of Node"));
}

TEST(NodePortPageSet, OffersNothingOfAnotherPortOrBoard) {
  enum Move { kOtherPort, kOtherPortIsSilent, kOtherBoard };
  for (const Move move : {kOtherPort, kOtherPortIsSilent, kOtherBoard}) {
    SCOPED_TRACE(move);
    Fixture fixture;
    fixture.pages.ShowPort(kPortB);
    fixture.Press(kSpiDac, "Retrieve");
    EXPECT_EQ(fixture.Row(kSpiDac, 1), "CH 1: LO=1 24=2");
    Grid(fixture.Page(kOutputs)).Click(3, 1);
    fixture.library.FailRead({});
    Button(fixture.Page(kGlcd), "Retrieve").click();
    EXPECT_TRUE(Lamp(fixture.Page(kGlcd), "Error").IsBlinking());

    if (move == kOtherPortIsSilent) fixture.library.FailRead({});
    if (move == kOtherBoard) fixture.ChooseSecond();
    fixture.pages.ShowPort(move == kOtherBoard ? kPortB : kPortJ);
    const char* const origins[]{"Retrieved from port J", kNotRetrieved, "Retrieved from port B"};
    EXPECT_THAT(fixture.Origin(kIoPort), StartsWith(origins[move]));
    EXPECT_EQ(Lamp(fixture.Page(kIoPort), "Error").IsBlinking(), move == kOtherPortIsSilent);
    for (const int tab : {kOutputs, kGlcd, kSpiDac}) {
      EXPECT_EQ(fixture.Origin(tab), kNotRetrieved);
      EXPECT_FALSE(Lamp(fixture.Page(tab), "Error").IsLit());
    }
    EXPECT_EQ(fixture.Row(kSpiDac, 1), "CH 1: OFF=0 10=0");
    EXPECT_EQ(fixture.Row(kOutputs, 3), "Output 3: ON");
  }
}

TEST(NodePortPageSet, LoadsTheDefaultsOfItsFourPagesInOrderAlsoAfterAFailure) {
  const std::string writes[]{
      "write 0 -> 0 : 00 02 08 02 1c 01 26 01 00 00 00 *\n",
      "write 0 -> 0 : 00 0f 19 0f 1c 01 28 01 00 01 01 01 01 01 01 01 01 01 01 01 01 01 01 01 *\n",
      "write 0 -> 0 : 00 01 29 01 1c 01 35 01 00 00 *\n",
      "write 0 -> 0 : 00 0a 34 0a 1c 01 10 01 00 00 00 00 00 00 00 00 00 00 00 *\n"};
  const char* const echoes[]{"26", "28", "35", "10"};
  const struct {
    const char* name;
    std::size_t page;    // the one that fails, from 0; 4: none
    const char* answer;  // what it gets
    bool message;
  } cases[]{
      {"all well", 4, "", false},
      {"port refused", 0, "read 0 -> 0 : 0a *\n", true},
      {"no answer for the outputs", 1, "read 0 -> 4\n", true},
      // Intended: of these pages only the way there and back counts.
      {"outputs refused", 1, "read 0 -> 0 : 0a *\n", false},
      {"channels refused", 3, "read 0 -> 0 : 0a *\n", false},
  };
  for (const auto& c : cases) {
    SCOPED_TRACE(c.name);
    TranscriptLibrary library("write 0 -> 0 : 00 00 08 02 1c 00 25 01 02 *\nread 0 -> 0 : 25 *");
    PageFixture board(library, 0x0800, 0x0110);
    NodeRecords nodes;
    nodes[1] = {.status = 1, .firmware = NodeUpdateStatus::kOk};
    board.link.table.SetCurrentNodes(nodes);
    CNodePortPageSet pages(board.Context());
    pages.ShowPort(4);
    std::string calls;
    for (std::size_t page = 0; page < 4; ++page) {
      calls += writes[page];
      calls += page == c.page ? c.answer : std::string("read 0 -> 0 : ") + echoes[page] + " *\n";
    }
    library.Expect(calls);
    if (c.message) {
      board.prompts.ExpectMessage("Load device defaults settings failed!", "Load Defaults",
                                  UserPrompts::Icon::kError);
    }
    pages.LoadDeviceDefaults();
    for (std::size_t page = 0; page < 4; ++page) {
      EXPECT_EQ(Lamp(*pages.Page(static_cast<int>(page) + 1), "Error").IsBlinking(),
                page == c.page);
    }
  }
}

}  // namespace quillon::testing
