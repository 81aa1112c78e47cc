// SPDX-License-Identifier: MIT
#include <gmock/gmock.h>

#include <QAbstractItemModelTester>
#include <QFont>
#include <QPixmap>
#include <QSignalSpy>
#include <string>

#include "res/Icons.h"
#include "tree/DeviceTreeModel.h"
#include "tree/TreeTable.h"

namespace quillon {
namespace {

using quillon::testing::AddBoard;
using ::testing::ElementsAre;

// The tree as lines: a step inwards is two blanks, "=n" is the item data.
std::vector<std::string> Lines(const QAbstractItemModel& model, const QModelIndex& parent = {},
                               const std::string& indent = {}) {
  std::vector<std::string> lines;
  for (int row = 0; row < model.rowCount(parent); ++row) {
    const QModelIndex item = model.index(row, 0, parent);
    const QVariant data = item.data(DeviceTreeModel::kItemDataRole);
    lines.push_back(indent + item.data().toString().toStdString() +
                    (data.isValid() ? " =" + data.toString().toStdString() : ""));
    for (const std::string& line : Lines(model, item, indent + "  ")) lines.push_back(line);
  }
  return lines;
}

bool IsBold(const QModelIndex& item) {
  return qvariant_cast<QFont>(item.data(Qt::FontRole)).bold();
}

// A model that is checked for consistency whenever it changes.
struct Tree {
  DeviceTable table;
  DeviceTreeModel model;
  QAbstractItemModelTester tester{&model, QAbstractItemModelTester::FailureReportingMode::Fatal};
};

TEST(DeviceTreeModel, ShowsAPlaceholderUnderARootWithoutBoards) {
  const auto nothing = ElementsAre("Flash Mode", "  Non Detected", "Device Mode", "  Non Detected");
  Tree tree;
  EXPECT_THAT(Lines(tree.model), nothing) << "before the first detection";

  AddBoard(tree.table, 2, 0x0910, "Stick", "7");
  tree.model.Rebuild(tree.table);
  EXPECT_THAT(Lines(tree.model),
              ElementsAre("Flash Mode", "  Non Detected", "Device Mode", "  Stick : 7 =1"));

  tree.table.Clear();
  tree.model.Rebuild(tree.table);
  EXPECT_THAT(Lines(tree.model), nothing);

  AddBoard(tree.table, 0, 0x0910);
  AddBoard(tree.table, 2, 0x0910);
  tree.model.Rebuild(tree.table);
  EXPECT_THAT(Lines(tree.model), nothing) << "a first type of 0 ends the list";
}

TEST(DeviceTreeModel, ListsBoardsInTableOrderUnderTheModeOfTheirType) {
  Tree tree;
  AddBoard(tree.table, 2, 0x0910, "A", "1");
  AddBoard(tree.table, 1, 0x0920, "B", "2");
  AddBoard(tree.table, 9, 0x0920, "C", "3");
  AddBoard(tree.table, 3, 0x1500, "D", "4");
  AddBoard(tree.table, 1, 0x1000, "E", "5");
  AddBoard(tree.table, 0, 0x1000, "F", "6");
  tree.model.Rebuild(tree.table);
  EXPECT_THAT(Lines(tree.model), ElementsAre("Flash Mode", "  B : 2 =2", "  E : 5 =5",  //
                                             "Device Mode", "  A : 1 =1", "  Non Detected =3",
                                             "  D : 4 =4", "  Non Detected =6"));
}

TEST(DeviceTreeModel, ListsThePresentNodesWithTheirPorts) {
  Tree tree;
  AddBoard(tree.table, 3, 0x0800, "First", "1");
  AddBoard(tree.table, 2, 0x0910, "Stick", "2");
  AddBoard(tree.table, 3, 0x0800, "Last", "3");
  NodeList first(12), last(20, false);
  first[0] = first[2] = true;
  last[11] = last[12] = true;  // only twelve nodes are known
  tree.model.Rebuild(tree.table, std::vector<NodeList>{first, {}, last});
  EXPECT_THAT(Lines(tree.model),
              ElementsAre("Flash Mode", "  Non Detected", "Device Mode",  //
                          "  First : 1 =1", "    Node 1", "      Port A =1", "      Port B =2",
                          "    Node 3", "      Port E =5", "      Port F =6",  //
                          "  Stick : 2 =2", "  Last : 3 =3",                   //
                          "    Node 12", "      Port W =23", "      Port X =24"));

  tree.model.Rebuild(tree.table, std::vector<NodeList>{{false, true}});
  EXPECT_THAT(Lines(tree.model), ElementsAre("Flash Mode", "  Non Detected", "Device Mode",  //
                                             "  First : 1 =1", "    Node 2", "      Port C =3",
                                             "      Port D =4", "  Stick : 2 =2", "  Last : 3 =3"));

  // More lists than boards: the table was emptied meanwhile.
  tree.table.Clear();
  tree.model.Rebuild(tree.table, std::vector<NodeList>{first, last});
  EXPECT_EQ(Lines(tree.model).size(), 4U);
}

TEST(DeviceTreeModel, DescribesBoardsAndTheirProblemsAndNeverAsMarkup) {
  Tree tree;
  AddBoard(tree.table, 1, 0x000A, std::string(260, '\xFF'), std::string(20, '9'));
  AddBoard(tree.table, 3, 0x0800);
  AddBoard(tree.table, 8, 0xBEEF);
  AddBoard(tree.table, 2, 0x0910, "<b>Bell\a</b>\nline", "");
  AddBoard(tree.table, 1, 0x0520);
  tree.table.SetProblem(3, {KVUSB_PROBLEM_PERMISSION, "<img src=x> & no\a."});
  tree.table.SetProblem(4, {KVUSB_PROBLEM_IN_USE, ""});
  for (const std::uint32_t told_to_restart : {1U, 2U, 4U}) {
    tree.table.SetCurrent(told_to_restart);
    tree.table.SetCurrentRestarting();
  }
  tree.table.SetCurrent(3);
  tree.model.Rebuild(tree.table, std::vector<NodeList>{{}, {true}});
  const auto text = [](const QModelIndex& item, int role = Qt::ToolTipRole) {
    return item.data(role).toString().toStdString();
  };
  const auto board = [&](std::uint32_t i) { return tree.model.IndexOfBoard(i); };
  EXPECT_EQ(text(board(0), Qt::DisplayRole), "\uFFFD : 99999999999999999999");
  EXPECT_EQ(text(board(0)), "Product id 0x000A, in Flash Mode");
  EXPECT_EQ(text(board(1)),
            "Product id 0x0800, in Device Mode. It was told to restart; its nodes are listed "
            "when it is back");
  EXPECT_EQ(text(board(2)), "Product id 0xBEEF, in an unknown mode. It was told to restart");
  EXPECT_EQ(text(tree.model.index(0, 0)), "");
  EXPECT_EQ(text(tree.model.index(0, 0, board(1))), "");
  EXPECT_EQ(text(board(3), Qt::DisplayRole), "<b>Bell\uFFFD</b>\uFFFDline : ");
  EXPECT_EQ(text(board(3)),
            "<qt>Product id 0x0910, in Device Mode (current board). &lt;img src=x&gt; &amp; "
            "no\uFFFD.</qt>");
  EXPECT_EQ(text(board(3), Qt::AccessibleDescriptionRole),
            "Product id 0x0910, in Device Mode (current board). <img src=x> & no\uFFFD.");
  EXPECT_EQ(text(board(4), Qt::AccessibleDescriptionRole),
            "Product id 0x0520, in Flash Mode. It was told to restart. It does not work, and the "
            "HID library does not say why.");
}

TEST(DeviceTreeModel, DrawsEveryKindOfItemWithItsOwnImage) {
  Tree tree;
  const auto shows = [](const QModelIndex& item, const char* name) {
    const QImage image = qvariant_cast<QIcon>(item.data(Qt::DecorationRole)).pixmap(16).toImage();
    return !image.isNull() && image == Icon(name).pixmap(16).toImage();
  };
  EXPECT_TRUE(shows(tree.model.index(0, 0, tree.model.index(0, 0)), "tree-none"));

  AddBoard(tree.table, 3, 0x0800);
  AddBoard(tree.table, 1, 0x0910);
  AddBoard(tree.table, 7, 0x0910);
  tree.model.Rebuild(tree.table, std::vector<NodeList>{{true}});
  const QModelIndex system = tree.model.index(0, 0, tree.model.index(1, 0));
  const QModelIndex node = tree.model.index(0, 0, system);
  EXPECT_TRUE(shows(tree.model.index(0, 0), "tree-flash-root"));
  EXPECT_TRUE(shows(tree.model.index(1, 0), "tree-device-root"));
  EXPECT_TRUE(shows(tree.model.IndexOfBoard(1), "tree-flash-board"));
  EXPECT_TRUE(shows(tree.model.IndexOfBoard(2), "tree-none"));
  EXPECT_TRUE(shows(system, "tree-device-board"));
  EXPECT_TRUE(shows(node, "tree-node"));
  EXPECT_TRUE(shows(tree.model.index(1, 0, node), "tree-port"));
}

TEST(DeviceTreeModel, PutsASignOnTheImageOfABoardWithAProblem) {
  Tree tree;
  for (const std::uint32_t type : {1U, 1U, 3U, 2U}) AddBoard(tree.table, type, 0x0910);
  tree.table.SetProblem(1, {KVUSB_PROBLEM_OTHER, "It is ill."});
  tree.table.SetProblem(3, {KVUSB_PROBLEM_PERMISSION, "No."});
  tree.model.Rebuild(tree.table, std::vector<NodeList>{{}, {}, {true}});
  const auto image = [&](std::uint32_t board, qreal ratio) {
    const QVariant icon = tree.model.IndexOfBoard(board).data(Qt::DecorationRole);
    return qvariant_cast<QIcon>(icon).pixmap(QSize(16, 16), ratio).toImage();
  };
  for (const int ratio : {1, 2}) {
    for (const auto& [well, ill] : {std::pair{0U, 1U}, {2U, 3U}}) {
      SCOPED_TRACE(ill);
      const QImage plain = image(well, ratio), marked = image(ill, ratio);
      ASSERT_EQ(marked.size(), plain.size());
      const int middle = plain.width() / 2;
      EXPECT_EQ(marked.copy(0, 0, middle / 2, middle), plain.copy(0, 0, middle / 2, middle))
          << "the kind is still seen";
      EXPECT_NE(marked.copy(middle, middle, middle, middle),
                plain.copy(middle, middle, middle, middle));
    }
  }
  EXPECT_NE(image(1, 1), image(3, 1));

  // Nothing of it stays once the board is well.
  const QImage marked = image(3, 1);
  tree.table.SetProblem(3, {});
  tree.model.Rebuild(tree.table);
  EXPECT_NE(image(3, 1), marked);
  EXPECT_EQ(image(3, 1), image(2, 1));
}

TEST(DeviceTreeModel, MarksTheCurrentBoardAlone) {
  Tree tree;
  AddBoard(tree.table, 2, 0x0910);
  AddBoard(tree.table, 1, 0x0910);
  AddBoard(tree.table, 3, 0x0800);
  tree.table.SetCurrent(1);
  tree.model.Rebuild(tree.table, std::vector<NodeList>{{}, {}, {true, true}});
  const auto bold = [&] {
    std::vector<std::string> items;
    for (std::uint32_t i = 0; i < 3; ++i) {
      if (IsBold(tree.model.IndexOfBoard(i))) items.push_back(std::to_string(i));
    }
    return items;
  };
  EXPECT_THAT(bold(), ElementsAre("1"));
  // Node 2 and port 2 carry numbers that are a board's index, too.
  EXPECT_FALSE(IsBold(tree.model.index(1, 0, tree.model.IndexOfBoard(2))));

  QSignalSpy changes(&tree.model, &QAbstractItemModel::dataChanged);
  tree.model.SetCurrent(2);
  EXPECT_THAT(bold(), ElementsAre("2"));
  ASSERT_EQ(changes.size(), 2);
  EXPECT_EQ(changes[0][0].toModelIndex(), tree.model.IndexOfBoard(1));
  EXPECT_EQ(changes[1][0].toModelIndex(), tree.model.IndexOfBoard(2));

  tree.model.SetCurrent(DeviceTreeModel::kNoBoard);
  EXPECT_THAT(bold(), ElementsAre());
}

}  // namespace
}  // namespace quillon
