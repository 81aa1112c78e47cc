// SPDX-License-Identifier: MIT
#include <gmock/gmock.h>

#include "pages/nodes/CIoPortsPage.h"
#include "pages/nodes/NodeBoards.h"
#include "settings/NodeSettings.h"
#include "widgets/CGridCtrl.h"
#include "widgets/CStatusLed.h"

namespace quillon::testing {
namespace {

using ::testing::ElementsAre;

constexpr int kActivePorts = 12;  // of six nodes

struct Fixture : NodeBoards {
  void Retrieve() const { Button(page, "Retrieve").click(); }
  std::string Origin() const { return OriginOf(page).toStdString(); }
  // The low byte of a port's word; the high one is 0.
  std::uint8_t& Word(int port) {
    return Memory(static_cast<std::size_t>(port - 1) / 2)[port % 2 != 0 ? 6 : 8];
  }

  CIoPortsPage page{fixture.Context(), NodeSystemPages().front()};
  CGridCtrl& grid = Grid(page);
};

}  // namespace

TEST(IoPorts, AreThoseOfActiveNodesAndTheOthersStayAsTheyAre) {
  Fixture fixture;
  ASSERT_EQ(fixture.grid.Rows(), 25);
  fixture.grid.Enter(13, 3, "SPI");
  fixture.Retrieve();
  const auto rows = ShownBy(fixture.page);
  EXPECT_THAT(std::vector(rows.begin(), rows.begin() + kActivePorts + 1),
              ElementsAre("Port A: ON Output=0 Direct=0", "Port B: ON Output=0 Multiplexed=1",
                          "Port C: ON Output=0 CRT RWR=2", "Port D: ON Output=0 GLCD=3",
                          "Port E: ON Output=0 8-bit DACs=4", "Port F: ON Output=0 Latched=5",
                          "Port G: ON Output=0 SPI=6", "Port H: ON Output=0 Dot Matrix=7",
                          "Port I: ON Input=1 Direct=0", "Port J: ON Input=1 Multiplexed=1",
                          "Port K: Input=1 Direct=0", "Port L: Output=0 Direct=0",
                          "Port M: Output=0 SPI=6"));
  EXPECT_EQ(rows.back(), "Port X: Output=0 Direct=0");
  EXPECT_THAT(fixture.Origin(), ::testing::StartsWith("Retrieved from"));

  // An absent node would refuse, and light the lamp.
  Button(fixture.page, "Update").click();
  EXPECT_FALSE(Lamp(fixture.page, "Error").IsLit());
  EXPECT_EQ(fixture.Word(10), 0x07) << "an input is stored as one";
  fixture.grid.Enter(10, 2, "Output");
  Button(fixture.page, "Update").click();
  EXPECT_EQ(fixture.Word(10), 0x05);
}

TEST(IoPorts, LeaveOutNodesThatAreNotCheckedAndSaySo) {
  Fixture fixture;
  for (const std::size_t node : {1U, 2U}) fixture.Table().CheckNode(node, false);
  bool sent = false;
  fixture.library.BeforeWrite({}, [&] { sent = true; });
  fixture.Retrieve();
  EXPECT_TRUE(sent);
  EXPECT_EQ(ShownBy(fixture.page)[2], "Port C: Output=0 Direct=0");
  EXPECT_THAT(fixture.Origin(),
              ::testing::EndsWith("left out: nodes 2, 3 are not checked in Node Configuration."));
}

TEST(IoPorts, SayThatNothingWasExchangedWhenNoNodeIsActive) {
  Fixture fixture;
  fixture.Table().SetCurrentNodes({});
  bool sent = false;
  fixture.library.BeforeWrite({}, [&] { sent = true; });
  fixture.Retrieve();
  EXPECT_THAT(fixture.Origin(), ::testing::MatchesRegex("Nothing was exchanged with .*: no node is "
                                                        "active\\."));
  EXPECT_TRUE(fixture.page.StoreOnBoard());
  EXPECT_THAT(fixture.Origin(), ::testing::StartsWith("Nothing was exchanged"));
  EXPECT_FALSE(Lamp(fixture.page, "Error").IsLit());
  EXPECT_FALSE(sent);
  fixture.library.DropUnstruck();
}

}  // namespace quillon::testing
