// SPDX-License-Identifier: MIT
#include "pages/nodes/NodeSystemFixture.h"

namespace quillon::testing {
namespace {

using Icon = UserPrompts::Icon;

constexpr int kNodes = 1, kCards = 2;

// A card of which two nodes answer; the board has a node, too.
constexpr const char* kNewCard2 = R"("nodes": [{"node": 1, "flash": "1.30"},
    {"node": 9, "flash": "1.30"}, {"node": 10, "flash": "1.30"}],
    "cards": [{"card": 2, "addressed": false}])";

struct CardFixture : NodeSystemFixture {
  explicit CardFixture(const std::string& fields) : NodeSystemFixture(fields) {
    Click(kCards, "Refresh");
  }

  bool IsAddressed(std::size_t node) { return bus.Find("b")->State().nodes[node].addressed; }
  void ExpectMessage(const char* text, const char* caption) {
    fixture.prompts.ExpectMessage(text, caption, Icon::kNone);
  }
  bool CanAddress() { return Press(kCards, "Address").isEnabled(); }
};

const std::string kBothRows =
    "[x] Card 1|5 - 8 ebebeb\n"
    "[x] Card 2|9 - 12 ebebeb\n";
const std::string kSecondRow =
    "[ ] Card 1| e1e1e1\n"
    "[x] Card 2|9 - 12 ebebeb\n";

}  // namespace

TEST(ExpansionCardPage, AddressesTheOnlyCardThatIsPlugged) {
  const struct {
    const char* fields;
    std::string rows;
    bool can_address;
  } cases[]{
      {kNewCard2, kSecondRow, true},
      {R"("nodes": [{"node": 7, "flash": "1.30"}, {"node": 12, "flash": "1.30"}])", kBothRows,
       false},
      {R"("nodes": [{"node": 4, "flash": "1.30"}])", "[ ] Card 1| e1e1e1\n[ ] Card 2| e1e1e1\n",
       false},
      {R"("nodes": [{"node": 5, "flash": "1.30"}, {"node": 8, "flash": "1.30"}],
          "cards": [{"card": 1, "addressed": false}])",
       "[x] Card 1|5 - 8 ebebeb\n[ ] Card 2| e1e1e1\n", true},
  };
  for (const auto& c : cases) {
    SCOPED_TRACE(c.fields);
    CardFixture cards(c.fields);
    EXPECT_EQ(cards.Rows(kCards, {0, 1}), c.rows);
    EXPECT_EQ(cards.CanAddress(), c.can_address);
    if (!c.can_address) continue;
    // Intended: the first step alone decides, whatever becomes of the second.
    cards.library.FailRead({.nth = 2, .command = 0x1C});
    cards.library.AnswerWithEcho({.nth = 4, .command = 0x1C}, 2);
    cards.ExpectMessage("Expansion card successfully addressed. Restarting device.",
                        "Card Address Success");
    cards.Click(kCards, "Address");
    for (std::size_t node = 4; node < 12; ++node) EXPECT_TRUE(cards.IsAddressed(node)) << node;
  }
}

TEST(ExpansionCardPage, AsksForTheNodesAndThenForTheCardsOnceAddressed) {
  for (const int unanswered : {1, 2}) {
    SCOPED_TRACE(unanswered);
    CardFixture cards(kNewCard2);
    std::vector<std::string> seen;
    cards.library.BeforeWrite({.command = 0x1D, .onwards = true}, [&] {
      EXPECT_FALSE(cards.fixture.link.gate.IsOpen());
      seen.push_back(cards.Rows(kCards, {1}));
    });
    cards.library.AnswerWithEcho({.nth = 1, .command = 0x1C}, 2);
    cards.library.AnswerWithEcho({.nth = unanswered, .command = 0x1D}, 0);
    cards.ExpectMessage("Expansion card addressing failed!", "Card Address Failure");
    cards.Click(kCards, "Address");
    EXPECT_FALSE(cards.IsAddressed(8));
    EXPECT_TRUE(cards.IsAddressed(9)) << "the slots after the one that refused";
    EXPECT_THAT(seen, ::testing::ElementsAre("[x] Card 2|9 - 12 ffc8c8 ebebeb\n",
                                             "[x] Card 2|9 - 12 ffc8c8 ebebeb\n"));
    EXPECT_TRUE(Named<QLabel>(cards.Page(kNodes), "What became of the nodes").text().isEmpty())
        << "one of the two answers fills that list too";
    EXPECT_EQ(cards.List(kCards).RowCount(), unanswered == 1 ? 2 : 0);
    if (unanswered == 1) {
      EXPECT_EQ(cards.Rows(kCards, {1}), "[x] Card 2|9 - 12 ebebeb\n");
    }
  }
}

// Both lists show what the board has said last, whichever page has asked it.
TEST(ExpansionCardPage, FollowsTheListOfNodesAndIsFollowedByIt) {
  for (const int asks : {kNodes, kCards}) {
    // The third query finds the card pulled.
    CardFixture cards(R"("nodes": [{"node": 1, "flash": "1.30"}, {"node": 9, "flash": "1.20"}],
                         "cards": [{"card": 2, "moves": [3]}])");
    cards.Page(kNodes);
    EXPECT_EQ(cards.Rows(kCards, {0, 1}), kSecondRow);
    EXPECT_TRUE(cards.Warns());
    cards.Click(asks, "Refresh");
    EXPECT_EQ(cards.Rows(kCards, {1}), "[ ] Card 2| e1e1e1\n") << asks;
    EXPECT_FALSE(cards.CanAddress()) << asks;
    EXPECT_EQ(cards.Rows(kNodes, {8}).substr(0, 15), "[ ] Node 9|N/A|") << asks;
    EXPECT_FALSE(cards.Warns()) << asks;
  }
}

TEST(ExpansionCardPage, SaysOfEachNodeThatItsExchangeFailed) {
  CardFixture cards(kNewCard2);
  cards.library.FailWrite({.nth = 1, .command = 0x1C, .onwards = true});
  for (int node = 0; node < 2; ++node) cards.ExpectMessage("HID failed!", "Card Address Failure");
  cards.ExpectMessage("Expansion card addressing failed!", "Card Address Failure");
  cards.Click(kCards, "Address");
  EXPECT_FALSE(cards.IsAddressed(8));
}

TEST(ExpansionCardPage, ShowsNoCardsWithoutAnAnswerAndAddressesTheOneFoundBefore) {
  CardFixture cards(kNewCard2);
  cards.library.AnswerWithEcho({.nth = 1, .command = 0x1D}, 0);
  cards.Click(kCards, "Refresh");
  EXPECT_EQ(cards.List(kCards).RowCount(), 0);
  cards.library.AnswerWithEcho({.nth = 1, .command = 0x1C}, 2);
  cards.library.AnswerWithEcho({.nth = 1, .command = 0x1D, .onwards = true}, 0);
  cards.ExpectMessage("Expansion card addressing failed!", "Card Address Failure");
  cards.Click(kCards, "Address");
  EXPECT_TRUE(cards.IsAddressed(9));

  cards.fixture.Detect();
  cards.pages.ShowBoard();
  for (const int tab : {kNodes, kCards}) {
    cards.Page(tab);
    EXPECT_EQ(cards.List(tab).RowCount(), 0) << "of a board that has never answered";
  }
  EXPECT_TRUE(cards.CanAddress());
  cards.Click(kCards, "Address");  // no message, nothing sent
  const auto hold = cards.fixture.link.gate.Enter();
  cards.Click(kCards, "Refresh");
  EXPECT_EQ(cards.List(kCards).RowCount(), 0) << "not while something else is under way";
}

}  // namespace quillon::testing
