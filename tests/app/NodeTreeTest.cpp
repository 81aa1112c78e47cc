// SPDX-License-Identifier: MIT
#include <gmock/gmock.h>

#include <QPlainTextEdit>
#include <algorithm>

#include "app/MainFixture.h"

namespace quillon::testing {
namespace {

using ::testing::Each;
using ::testing::ElementsAre;
using ::testing::StartsWith;

// A stick, then two node I/O systems: one with node 1, one with node 2.
const std::string kStick =
    R"({"id": "j", "product": "0x0910", "serial": "100", "firmware": "2.82"},)";
constexpr const char* kTwoSystems =
    R"({"id": "a", "product": "0x0800", "serial": "200", "firmware": "1.10",
        "nodes": [{"node": 1, "flash": "1.30"}]},
       {"id": "b", "product": "0x0800", "serial": "300", "firmware": "1.10",
        "nodes": [{"node": 2, "flash": "1.30"}]})";

// The items of that tree and the boards that they stand under.
constexpr struct {
  const char *item, *serial;
  std::uint32_t board;
} kItems[]{{": 100", "100", 0}, {": 200", "200", 1},  {"Node 1", "200", 1}, {"Port B", "200", 1},
           {": 300", "300", 2}, {"Node 2", "300", 2}, {"Port C", "300", 2}};

std::string InLoaders(QString systems) {
  return systems.replace("\"nodes\"", "\"mode\": \"flash\", \"nodes\"").toStdString();
}

bool IsOfferedAt(const CDeviceTreeCtrl& tree, DeviceTool tool) {
  const auto entries = DeviceToolEntries();
  const auto entry = std::ranges::find(entries, tool, &DeviceToolEntry::tool);
  const auto& model = dynamic_cast<const DeviceTreeModel&>(*tree.model());
  return IsOffered(*entry, model.Kind(tree.currentIndex()));
}

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
  SimMain main(kStick +
               R"({"id": "a", "product": "0x0800", "serial": "200", "firmware": "1.10",
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
  SimMain main(kStick + kTwoSystems);
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

TEST(NodeTree, AsksABoardOnceInADetectionAndAgainWhenItIsChosen) {
  SimMain main(kTwoSystems);
  auto& window = main.fixture.window;
  const auto eeprom = [&] {
    const auto* const report = window.ShownPageSet()->findChild<QPlainTextEdit*>();
    return report->toPlainText().contains("  EEPROM : Detected\n");
  };
  window.Initialise();
  const auto once = ElementsAre("200 06", "300 06", "200 1D", "300 1D");
  EXPECT_THAT(main.witness.heard, once);
  EXPECT_TRUE(eeprom());

  main.witness.heard.clear();
  main.Select(": 300");
  EXPECT_THAT(main.witness.heard, ElementsAre("300 1D"));
  EXPECT_TRUE(eeprom());

  main.witness.heard.clear();
  main.library.FailRead({.command = 0x1D});
  window.Redetect();
  EXPECT_THAT(main.witness.heard, once) << "no time-out twice";
  EXPECT_FALSE(eeprom());
  EXPECT_EQ(NodesIn(window.Tree()), "300: 2");
  main.Select(": 300");
  EXPECT_TRUE(eeprom());
}

TEST(NodeTree, DoesNotWaitForABoardThatWasToldToRestart) {
  for (const bool by_button : {false, true}) {
    SCOPED_TRACE(by_button);
    SimMain main(kTwoSystems);
    auto& tree = main.fixture.window.Tree();
    main.fixture.window.Initialise();
    if (!by_button) main.Select("Port B");
    main.witness.heard.clear();
    if (by_button) {
      main.Press("Flash").click();
      tree.Rebuild();  // as after another board's defaults
    } else {
      tree.Run(DeviceTool::kRestartFlash);
    }
    EXPECT_THAT(main.witness.heard, ElementsAre("200 FF", "300 1D"));
    EXPECT_EQ(NodesIn(tree), "300: 2");
    EXPECT_TRUE(tree.currentIndex().data(Qt::ToolTipRole).toString().contains("told to restart"));

    main.witness.heard.clear();
    main.fixture.window.Redetect();
    EXPECT_EQ(NodesIn(tree), "200: 1, 300: 2");
    EXPECT_THAT(main.witness.heard, ElementsAre("200 06", "300 06", "200 1D", "300 1D"));
    EXPECT_FALSE(tree.currentIndex().data(Qt::ToolTipRole).toString().contains("restart"));
  }
}

TEST(NodeTree, TalksOnlyToTheBoardThatTheChosenItemStandsUnder) {
  for (const auto& from : kItems) {
    for (const auto& to : kItems) {
      if (from.item == to.item) continue;
      SCOPED_TRACE(std::string(from.item) + " -> " + to.item);
      SimMain main(kStick + kTwoSystems);
      main.fixture.window.Initialise();
      main.Select(from.item);
      main.witness.heard.clear();
      main.Select(to.item);
      EXPECT_EQ(main.fixture.link.table.Current(), to.board);
      EXPECT_THAT(main.witness.heard, Each(StartsWith(to.serial)));
    }
  }
}

TEST(NodeTree, UsesEveryToolOnTheBoardThatTheChosenItemStandsUnder) {
  const struct {
    DeviceTool tool;
    bool loaders;  // the systems run their loaders
    const char* sent;
    int uses;
  } cases[]{{DeviceTool::kRestartFlash, false, " FF", 5},
            {DeviceTool::kRestartFlash, true, " 09", 2},
            {DeviceTool::kRestartDevice, true, " FF", 2},
            {DeviceTool::kLoadDefaults, false, "", 5}};
  for (const auto& c : cases) {
    int uses = 0;
    for (const auto& to : kItems) {
      SCOPED_TRACE(std::to_string(static_cast<int>(c.tool)) + " on " + to.item);
      SimMain main(kStick + (c.loaders ? InLoaders(kTwoSystems) : kTwoSystems));
      auto& tree = main.fixture.window.Tree();
      main.fixture.window.Initialise();
      main.Select(to.board == 1 ? "Port C" : "Port B");
      main.Select(to.item);
      if (!IsOfferedAt(tree, c.tool) || (c.loaders && to.board == 0)) continue;
      ++uses;
      main.witness.heard.clear();
      const bool restarts = c.tool != DeviceTool::kLoadDefaults;
      if (!restarts) {
        main.fixture.prompts.ExpectQuestion(
            "Are you sure you want to load the\r\ndefault settings for this item?", "Load Defaults",
            true);
        main.fixture.prompts.WhileOpen(
            [&] { EXPECT_EQ(main.fixture.link.table.Current(), to.board) << "confirmed for"; });
      }
      tree.Run(c.tool);
      // The rebuilt tree asks both systems for their nodes.
      std::erase_if(main.witness.heard, [](const auto& line) { return line.ends_with(" 1D"); });
      EXPECT_THAT(main.witness.heard, Each(StartsWith(to.serial + std::string(c.sent))));
      EXPECT_TRUE(!restarts || main.witness.heard.size() == 1);
    }
    EXPECT_EQ(uses, c.uses);
  }
}

}  // namespace quillon::testing
