// SPDX-License-Identifier: MIT
#include <gmock/gmock.h>

#include "app/MainFixture.h"

namespace quillon::testing {
namespace {

using ::testing::ElementsAre;

// A stick, then two node I/O systems: one with node 1, one with node 2.
constexpr const char* kTwoSystems =
    R"({"id": "j", "product": "0x0910", "serial": "100", "firmware": "2.82"},
       {"id": "a", "product": "0x0800", "serial": "200", "firmware": "1.10",
        "nodes": [{"node": 1, "flash": "1.30"}]},
       {"id": "b", "product": "0x0800", "serial": "300", "firmware": "1.10",
        "nodes": [{"node": 2, "flash": "1.30"}]})";

// The tree's nodes, board by board: "200: 1 5, 300: 2".
std::string NodesIn(const CDeviceTreeCtrl& tree) {
  const QAbstractItemModel& model = *tree.model();
  QStringList boards;
  for (int root = 0; root < model.rowCount(); ++root) {
    for (int row = 0; row < model.rowCount(model.index(root, 0)); ++row) {
      const QModelIndex board = model.index(row, 0, model.index(root, 0));
      QString line;
      for (int node = 0; node < model.rowCount(board); ++node)
        line += " " + model.index(node, 0, board).data().toString().section(' ', 1);
      const QString serial = board.data().toString().section(": ", 1);
      if (!line.isEmpty()) boards << serial + ":" + line;
    }
  }
  return boards.join(", ").toStdString();
}

}  // namespace

TEST(NodeTree, ListsTheNodesOfEachBoardAndFollowsItsCards) {
  SimMain main(
      R"({"id": "j", "product": "0x0910", "serial": "100", "firmware": "2.82"},
         {"id": "a", "product": "0x0800", "serial": "200", "firmware": "1.10",
          "nodes": [{"node": 1, "flash": "1.30"}, {"node": 5, "flash": "1.30"}],
          "cards": [{"card": 1, "moves": [2, 3]}]},
         {"id": "b", "product": "0x0800", "serial": "300", "firmware": "1.10", "mode": "flash",
          "nodes": [{"node": 2, "flash": "1.30"}, {"node": 12, "flash": "1.30"}],
          "cards": [{"card": 2, "plugged": false, "moves": [3]}]},
         {"id": "o", "product": "0x1200", "serial": "400", "firmware": "1.10",
          "nodes": [{"node": 1, "flash": "1.30"}]})");
  auto& window = main.fixture.window;
  window.Initialise();
  EXPECT_EQ(NodesIn(window.Tree()), "300: 2, 200: 1 5");
  EXPECT_THAT(main.witness.heard, ElementsAre("300 06", "200 06", "400 06", "300 1D", "200 1D"));
  window.Redetect();
  EXPECT_EQ(NodesIn(window.Tree()), "300: 2, 200: 1");
  window.Redetect();
  EXPECT_EQ(NodesIn(window.Tree()), "300: 2 12, 200: 1 5");
  EXPECT_TRUE(main.fixture.link.table.Nodes(1)[11].IsActive()) << "each board has its own";
  EXPECT_FALSE(main.fixture.link.table.Nodes(2)[11].IsActive());
}

TEST(NodeTree, GoesOnWithoutTheNodesOfABoardThatIsPulledWhileItIsAsked) {
  SimMain main(kTwoSystems);
  auto& window = main.fixture.window;
  window.Initialise();
  main.Select(": 300");
  main.library.BeforeRead({.command = 0x1D}, [&] {
    main.bus.Unplug("a");
    main.fixture.ReportArrival();  // a removal leads to the same
  });
  window.Redetect();
  EXPECT_EQ(NodesIn(window.Tree()), "300: 2");
  EXPECT_EQ(main.fixture.link.table.Current(), 0U);
  main.Select("Node 2");
  main.fixture.RunEvents();
  EXPECT_EQ(main.fixture.link.table.Count(), 2U) << "the detection that its removal led to";
}

}  // namespace quillon::testing
