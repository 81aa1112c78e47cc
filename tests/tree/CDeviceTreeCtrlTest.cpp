// SPDX-License-Identifier: MIT
#include <gmock/gmock.h>

#include <QAbstractItemModelTester>
#include <QApplication>
#include <QContextMenuEvent>
#include <QFont>
#include <QMenu>
#include <QSignalSpy>
#include <QTest>
#include <QTimer>
#include <map>
#include <string>

#include "devlink/NoLibrary.h"
#include "tree/CDeviceTreeCtrl.h"
#include "tree/TreeTable.h"

namespace quillon {
namespace {

using quillon::testing::AddBoard;
using ::testing::ElementsAre;
using ::testing::IsEmpty;

class DeviceTreeCtrl : public ::testing::Test {
 protected:
  DeviceTreeCtrl() {
    tree.resize(320, 600);
    tree.show();
  }

  // One board of every kind: a node system (with nodes 1 and 3), a stick, one in its loader, one
  // of an unknown type.
  void FillAllKinds() {
    AddBoard(link.table, 2, 0x0910, "Stick");
    AddBoard(link.table, 1, 0x0920, "Loader");
    AddBoard(link.table, 3, 0x0800, "System");
    AddBoard(link.table, 9, 0x0910, "Unknown");
    tree.SetNodeReader([] { return NodeList{true, false, true}; });
    tree.Rebuild();
  }

  QModelIndex Root(int row) const { return tree.model()->index(row, 0); }
  QModelIndex FlashRoot() const { return Root(0); }
  QModelIndex DeviceRoot() const { return Root(1); }
  QModelIndex Stick() const { return tree.model()->index(0, 0, DeviceRoot()); }
  QModelIndex Loader() const { return tree.model()->index(0, 0, FlashRoot()); }
  QModelIndex System() const { return tree.model()->index(1, 0, DeviceRoot()); }
  QModelIndex Unknown() const { return tree.model()->index(2, 0, DeviceRoot()); }
  QModelIndex Node() const { return tree.model()->index(1, 0, System()); }
  QModelIndex Port() const { return tree.model()->index(1, 0, Node()); }

  void Click(const QModelIndex& item) {
    tree.scrollTo(item);
    QTest::mouseClick(tree.viewport(), Qt::LeftButton, {}, tree.visualRect(item).center());
  }

  // What opens the menu is a nested event loop: while the menu is open, `look` sees it, then it is
  // closed. Returns whether there was one.
  static bool SeesMenu(const std::function<void()>& open, const std::function<void(QMenu&)>& look) {
    bool opened = false;
    QTimer visitor;
    visitor.setSingleShot(true);
    QObject::connect(&visitor, &QTimer::timeout, [&] {
      auto* menu = qobject_cast<QMenu*>(QApplication::activePopupWidget());
      if (menu == nullptr) return;
      opened = true;
      if (look) look(*menu);
      menu->close();
    });
    visitor.start(0);
    open();
    QApplication::processEvents();
    return opened;
  }

  bool RightClick(const QPoint& place, const std::function<void(QMenu&)>& look = {}) {
    return SeesMenu(
        [&] {
          QTest::mousePress(tree.viewport(), Qt::RightButton, {}, place);
          QContextMenuEvent event(QContextMenuEvent::Mouse, place,
                                  tree.viewport()->mapToGlobal(place));
          QApplication::sendEvent(tree.viewport(), &event);
        },
        look);
  }

  bool RightClick(const QModelIndex& item, const std::function<void(QMenu&)>& look = {}) {
    return RightClick(tree.visualRect(item).center(), look);
  }

  static QAction* Entry(const QMenu& menu, DeviceTool tool) {
    for (QAction* action : menu.actions()) {
      if (action->data().isValid() && action->data().toInt() == static_cast<int>(tool)) {
        return action;
      }
    }
    throw std::runtime_error("the menu lacks an entry");
  }

  NoLibrary library;
  BoardLink link{library};
  CDeviceTreeCtrl tree{link};
  QAbstractItemModelTester tester{tree.model(),
                                  QAbstractItemModelTester::FailureReportingMode::Fatal};
  QSignalSpy boards{&tree, &CDeviceTreeCtrl::BoardSelected};
  QSignalSpy ports{&tree, &CDeviceTreeCtrl::PortSelected};
};

TEST_F(DeviceTreeCtrl, SelectsOnceInEveryRebuild) {
  tree.Rebuild();
  EXPECT_EQ(boards.size(), 1) << "without boards the owner learns of it, too";
  EXPECT_FALSE(tree.currentIndex().isValid());

  FillAllKinds();
  EXPECT_EQ(boards.size(), 2);
  EXPECT_EQ(tree.currentIndex(), Stick());
  EXPECT_TRUE(tree.selectionModel()->isSelected(Stick()));

  {
    const auto hold = link.gate.Enter();  // a detection holds the gate
    tree.Rebuild();
  }
  EXPECT_EQ(boards.size(), 3);
  QApplication::processEvents();
  EXPECT_EQ(boards.size(), 3);
  EXPECT_EQ(ports.size(), 0);
}

TEST_F(DeviceTreeCtrl, ReadsNodesAsTheCurrentBoardAndGoesBackToTheFirst) {
  struct Case {
    const char* what;
    std::vector<std::uint16_t> products;
    std::uint32_t current;
    std::uint32_t selected;
    std::vector<std::uint32_t> reads;  // what was current in each reading
    std::uint32_t type = 3;
  };
  const Case cases[] = {
      {"no node system", {0x0910, 0x0920, 0x1200}, 2, 2, {}},
      {"one whose firmware knows no nodes", {0x0910, 0x0800}, 1, 1, {}, 2},
      {"in its loader", {0x0910, 0x0800}, 1, 0, {1}, 1},
      {"behind the current board", {0x0910, 0x0920, 0x0800}, 1, 0, {2}},
      {"the current board itself", {0x0910, 0x0800, 0x0920}, 1, 0, {1}},
      {"before the current board", {0x0910, 0x0800, 0x0920}, 2, 0, {1}},
      {"first, before the current board", {0x0800, 0x0910}, 1, 0, {0}},
      {"on both sides of it", {0x0910, 0x0800, 0x0920, 0x0800}, 2, 0, {1, 3}},
  };
  std::vector<std::uint32_t> reads;
  tree.SetNodeReader([&] {
    reads.push_back(link.table.Current());
    return NodeList();
  });
  for (const Case& c : cases) {
    SCOPED_TRACE(c.what);
    link.table.Clear();
    for (const std::uint16_t product : c.products) AddBoard(link.table, c.type, product);
    link.table.SetCurrent(c.current);
    reads.clear();
    boards.clear();
    tree.Rebuild();
    EXPECT_EQ(reads, c.reads);
    EXPECT_EQ(link.table.Current(), c.selected);
    EXPECT_EQ(tree.currentIndex().row(), static_cast<int>(c.selected));
    const QModelIndex root = tree.currentIndex().parent();
    for (int row = 0; row < tree.model()->rowCount(root); ++row) {
      const QModelIndex board = tree.model()->index(row, 0, root);
      EXPECT_EQ(qvariant_cast<QFont>(board.data(Qt::FontRole)).bold(),
                board == tree.currentIndex());
    }
    EXPECT_EQ(boards.size(), 1);
  }
}

TEST_F(DeviceTreeCtrl, ShowsBoardsAndFoldsNodesAfterEveryRebuild) {
  FillAllKinds();
  const auto check = [&] {
    EXPECT_TRUE(tree.isExpanded(FlashRoot()) && tree.isExpanded(DeviceRoot()));
    EXPECT_FALSE(tree.isExpanded(System()) || tree.isExpanded(Node()));
  };
  check();
  tree.Run(DeviceTool::kExpandAll);
  EXPECT_TRUE(tree.isExpanded(System()) && tree.isExpanded(Node()));
  tree.Rebuild();
  check();
  tree.Run(DeviceTool::kCollapseAll);
  EXPECT_FALSE(tree.isExpanded(FlashRoot()) || tree.isExpanded(DeviceRoot()));
  tree.Rebuild();
  check();
}

TEST_F(DeviceTreeCtrl, MakesTheBoardOfAChosenItemCurrentBeforeItTellsAnybody) {
  FillAllKinds();
  tree.expandAll();
  std::uint32_t told = 0;
  const auto note = [&] { told = link.table.Current(); };
  QObject::connect(&tree, &CDeviceTreeCtrl::BoardSelected, note);
  QObject::connect(&tree, &CDeviceTreeCtrl::PortSelected, note);
  struct Case {
    const char* what;
    QModelIndex item;
    std::uint32_t current;
    int boards, port;
  };
  const Case cases[] = {
      {"board in its loader", Loader(), 1, 1, 0},
      {"root", FlashRoot(), 1, 0, 0},
      {"node system", System(), 2, 1, 0},
      {"node", Node(), 2, 0, 0},
      {"port F", Port(), 2, 0, 6},
      {"unknown type", Unknown(), 3, 1, 0},
      {"root", DeviceRoot(), 3, 0, 0},
      {"first board", Stick(), 0, 1, 0},
      {"port F", Port(), 2, 0, 6},
      {"its node", Node(), 2, 0, 0},
      {"another board", Stick(), 0, 1, 0},
      {"a node of a board that is not current", Node(), 2, 1, 0},
      {"back to the first", Stick(), 0, 1, 0},
      {"the same again", Stick(), 0, 0, 0},
  };
  for (const Case& c : cases) {
    SCOPED_TRACE(c.what);
    boards.clear();
    ports.clear();
    Click(c.item);
    EXPECT_EQ(tree.currentIndex(), c.item);
    EXPECT_EQ(link.table.Current(), c.current);
    EXPECT_EQ(told, c.current);
    EXPECT_EQ(tree.ChosenPort(), c.port);
    EXPECT_EQ(boards.size(), c.boards);
    EXPECT_EQ(ports.size(), c.port == 0 ? 0 : 1);
    for (const QList<QVariant>& chosen : ports) EXPECT_EQ(chosen[0].toInt(), c.port);
  }

  QTest::keyClick(&tree, Qt::Key_Down);
  EXPECT_EQ(link.table.Current(), 2U) << "by keyboard";
  EXPECT_EQ(boards.size(), 1);
  EXPECT_TRUE(qvariant_cast<QFont>(System().data(Qt::FontRole)).bold());
  EXPECT_FALSE(qvariant_cast<QFont>(Stick().data(Qt::FontRole)).bold());
}

TEST_F(DeviceTreeCtrl, KeepsTheHighlightOnACtrlClick) {
  FillAllKinds();
  QTest::mouseClick(tree.viewport(), Qt::LeftButton, Qt::ControlModifier,
                    tree.visualRect(Stick()).center());
  EXPECT_TRUE(tree.selectionModel()->isSelected(Stick()));
  QTest::keyClick(&tree, Qt::Key_Space, Qt::ControlModifier);
  EXPECT_TRUE(tree.selectionModel()->isSelected(Stick()));
}

TEST_F(DeviceTreeCtrl, RefusesAChoiceWhileTheGateIsHeld) {
  FillAllKinds();
  boards.clear();
  {
    const auto hold = link.gate.Enter();
    Click(Loader());
    Click(System());
    EXPECT_FALSE(RightClick(Loader()));
    EXPECT_FALSE(link.gate.IsOpen());
  }
  QApplication::processEvents();
  EXPECT_EQ(link.table.Current(), 0U);
  EXPECT_EQ(boards.size(), 0);
  EXPECT_EQ(tree.currentIndex(), Stick()) << "the highlight goes back";
  Click(System());
  EXPECT_EQ(link.table.Current(), 2U);
}

TEST_F(DeviceTreeCtrl, OffersTheToolsThatFitTheItemAndSaysWhyOthersAreDisabled) {
  const auto tip = [&](const QModelIndex& at) {
    const auto menu = tree.MakeMenu(at);
    const QAction* action = Entry(*menu, DeviceTool::kRestartFlash);
    EXPECT_EQ(action->statusTip(), action->toolTip());
    EXPECT_TRUE(menu->toolTipsVisible());
    return (action->isEnabled() ? "+ " : "- ") + action->toolTip().toStdString();
  };
  FillAllKinds();
  EXPECT_EQ(tip(Stick()), "+ Restarts the board into its firmware loader.");
  EXPECT_EQ(tip(Loader()), "- Only for a board in Device Mode and for a port.");

  const auto offered = [&](const QModelIndex& at) {
    std::string line;
    const auto menu = tree.MakeMenu(at);
    for (const QAction* action : menu->actions()) {
      if (action->isSeparator()) line += "| ";
      if (action->isEnabled() && !action->isSeparator())
        line += action->data().toString().toStdString() + " ";
    }
    return line;
  };
  const std::string always = "61453 | 61456 61457 ";
  EXPECT_EQ(offered(Loader()), "61453 61454 32779 | 61456 61457 ");
  for (const QModelIndex& item : {Stick(), System(), Port()})
    EXPECT_EQ(offered(item), "61453 61455 115 32779 | 61456 61457 ");
  for (const QModelIndex& item : {{}, FlashRoot(), DeviceRoot(), Node(), Unknown()})
    EXPECT_EQ(offered(item), always);

  std::vector<std::string> texts;
  const auto menu = tree.MakeMenu(Port());
  for (const QAction* action : menu->actions()) {
    texts.push_back(action->isSeparator() ? "-" : action->text().toStdString());
    EXPECT_EQ(action->isSeparator(), action->icon().isNull());
    EXPECT_EQ(action->isSeparator(), action->toolTip().isEmpty());
  }
  EXPECT_THAT(texts, ElementsAre("Refresh device list", "Restart in Flash Mode",
                                 "Restart in Device Mode", "Load default settings",
                                 "Check for firmware update", "-", "Expand all", "Collapse all"));

  link.table.Clear();
  tree.Rebuild();
  EXPECT_EQ(offered(tree.model()->index(0, 0, FlashRoot())), always) << "placeholder";
}

TEST_F(DeviceTreeCtrl, HandsARightClickedItemToTheSelection) {
  FillAllKinds();
  tree.expandAll();
  const auto title = [](QMenu& menu) { EXPECT_EQ(menu.title(), "Device Tools"); };
  EXPECT_TRUE(RightClick(Loader(), title));
  EXPECT_EQ(link.table.Current(), 1U);
  EXPECT_TRUE(RightClick(Unknown()));
  EXPECT_EQ(tree.currentIndex(), Loader()) << "not for an item that is not detected";
  EXPECT_EQ(link.table.Current(), 1U);
  EXPECT_TRUE(RightClick(Port()));
  EXPECT_EQ(tree.currentIndex(), Port());
  EXPECT_EQ(ports.size(), 1);

  EXPECT_TRUE(RightClick(QPoint(5, 590), [](QMenu& menu) {
    EXPECT_FALSE(Entry(menu, DeviceTool::kLoadDefaults)->isEnabled());
  })) << "below all items";
  EXPECT_EQ(tree.currentIndex(), Port());
}

TEST_F(DeviceTreeCtrl, OpensTheMenuByKeyboardAtTheHighlight) {
  FillAllKinds();
  const auto look = [](QMenu& menu) {
    EXPECT_TRUE(Entry(menu, DeviceTool::kLoadDefaults)->isEnabled());
  };
  const auto by_event = [&] {
    QContextMenuEvent event(QContextMenuEvent::Keyboard, QPoint(), QPoint());
    QApplication::sendEvent(&tree, &event);
  };
  const auto by_key = [&] { QTest::keyClick(&tree, Qt::Key_F10, Qt::ShiftModifier); };
  EXPECT_TRUE(SeesMenu(by_event, look));
  EXPECT_TRUE(SeesMenu(by_key, look));
  const auto hold = link.gate.Enter();
  EXPECT_FALSE(SeesMenu(by_event, look));
  EXPECT_FALSE(SeesMenu(by_key, look));
}

TEST_F(DeviceTreeCtrl, HoldsTheGateWhileTheMenuIsOpenAndNotForTheChosenTool) {
  FillAllKinds();
  std::vector<std::string> story;
  link.gate.SetAction([&] { story.emplace_back("waiting event"); });
  const auto tell = [&](std::string what) {
    story.push_back(std::move(what) + (link.gate.IsOpen() ? ", gate open" : ", gate held"));
  };
  QObject::connect(&tree, &CDeviceTreeCtrl::RefreshRequested, [&] { tell("refresh"); });
  QObject::connect(&tree, &CDeviceTreeCtrl::LoadDefaultsRequested, [&] { tell("defaults"); });
  QObject::connect(&tree, &CDeviceTreeCtrl::FirmwareCheckRequested, [&] { tell("check"); });
  QObject::connect(&tree, &CDeviceTreeCtrl::RestartRequested, [&](bool to_flash) {
    tell(to_flash ? "restart to flash" : "restart to device");
  });
  const auto choose = [&](const QModelIndex& at, DeviceTool tool) {
    story.clear();
    EXPECT_TRUE(RightClick(at, [&](QMenu& menu) {
      tell("menu");
      link.gate.Request();
      menu.setActiveAction(Entry(menu, tool));
      QTest::keyClick(&menu, Qt::Key_Return);
    }));
    return story;
  };
  const auto told = [](const char* what) {
    return ElementsAre("menu, gate held", "waiting event", std::string(what) + ", gate open");
  };
  EXPECT_THAT(choose(Stick(), DeviceTool::kRefresh), told("refresh"));
  EXPECT_THAT(choose(Stick(), DeviceTool::kLoadDefaults), told("defaults"));
  EXPECT_THAT(choose(Stick(), DeviceTool::kCheckUpdate), told("check"));
  EXPECT_THAT(choose(Stick(), DeviceTool::kRestartFlash), told("restart to flash"));
  EXPECT_THAT(choose(Loader(), DeviceTool::kRestartDevice), told("restart to device"));

  story.clear();
  EXPECT_TRUE(RightClick(Stick()));
  EXPECT_THAT(story, IsEmpty()) << "closed without a choice";
  EXPECT_TRUE(link.gate.IsOpen());
}

}  // namespace
}  // namespace quillon
