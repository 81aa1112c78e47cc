// SPDX-License-Identifier: MIT
#include <gmock/gmock.h>

#include "settings/SheetFixture.h"

namespace quillon::testing {
namespace {

using ::testing::ElementsAre;

struct Place {
  const char* table;
  int line;
  const char* setting;
};

struct OnePage : Sheet {
  OnePage(BoardFamily family, const char* page) : Sheet(*FindPage(family, page)) {}

  Cell At(const Place& place) const { return *Find(place.table, place.line, place.setting); }
};

}  // namespace

TEST(Sheet, AppliesTheRulesOfItsPage) {
  constexpr auto kFull = BoardFamily::kJoystick;
  constexpr auto kMatrix = BoardFamily::kScanMatrix;
  struct Case {
    BoardFamily family;
    const char* page;
    std::vector<std::pair<Place, std::uint32_t>> edits;
    std::vector<std::pair<Place, std::uint32_t>> then;
  };
  const Place hat1{"hat", 1, "mode"}, hat2{"hat", 2, "mode"};
  const Case cases[]{
      // One channel at most drives an axis; a channel may drive several.
      {kFull,
       "analog",
       {{{"analog", 3, "axis_x"}, 1}},
       {{{"analog", 3, "axis_x"}, 1}, {{"analog", 3, "axis_z"}, 1}, {{"analog", 1, "axis_x"}, 0}}},
      {kFull,
       "analog",
       {{{"encoder", 1, "axis_x"}, 1}, {{"incremental", 1, "axis_y"}, 1}},
       {{{"analog", 1, "axis_x"}, 0}, {{"analog", 2, "axis_y"}, 0}, {{"encoder", 1, "on"}, 0}}},
      // A pair is Rotary on both inputs or on neither.
      {kFull, "digital", {{{"input", 4, "mode"}, 4}}, {{{"input", 3, "mode"}, 4}}},
      {kFull,
       "digital",
       {{{"input", 4, "mode"}, 4}, {{"input", 3, "mode"}, 1}},
       {{{"input", 4, "mode"}, 0}, {{"input", 3, "mode"}, 1}}},
      {kFull,
       "digital",
       {{{"input", 5, "mode"}, 2}, {{"input", 6, "mode"}, 1}},
       {{{"input", 5, "mode"}, 2}}},
      {kMatrix,
       "digital",
       {{{"input", 63, "mode"}, 2}, {{"input", 64, "mode"}, 1}},
       {{{"input", 63, "mode"}, 0}}},
      {kMatrix, "digital", {{{"input", 64, "mode"}, 2}}, {{{"input", 63, "mode"}, 2}}},
      {kFull, "digital", {{{"input", 7, "encoder"}, 2}}, {{{"input", 8, "encoder"}, 2}}},
      {kFull,
       "digital",
       {{{"input", 2, "master"}, 1}, {{"input", 9, "master"}, 1}},
       {{{"input", 2, "master"}, 0}, {{"input", 9, "master"}, 1}}},
      {kFull, "hat", {{hat1, 4}}, {{hat2, 4}}},
      {kFull, "hat", {{hat2, 4}}, {{hat1, 4}}},
      {kFull, "hat", {{hat2, 4}, {hat2, 1}}, {{hat1, 0}, {hat2, 1}}},
      {kFull, "hat", {{hat1, 4}, {hat1, 6}}, {{hat1, 6}, {hat2, 0}}},
      {kFull, "hat", {{hat1, 3}, {hat2, 1}}, {{hat1, 3}, {hat2, 1}}},
  };
  for (const Case& c : cases) {
    OnePage sheet(c.family, c.page);
    for (const auto& [place, code] : c.edits) sheet.Edit(sheet.At(place), code);
    for (const auto& [place, code] : c.then)
      EXPECT_EQ(sheet.Code(sheet.At(place)), code)
          << c.page << " case " << &c - cases << ": " << place.table << ' ' << place.line << ' '
          << place.setting;
  }
}

// A board that holds a FALCO on one connector shows it until the next choice, of the damping too.
TEST(Sheet, TakesALoneFalcoAwayWithTheNextChoice) {
  for (const Place edited : {Place{"damping", 1, "damping"}, Place{"hat", 2, "mode"}}) {
    OnePage sheet(BoardFamily::kJoystick, "hat");
    sheet.Retrieved(0, Bytes{0x09, 0, 0x03, 0});
    sheet.Edit(sheet.At({"hat", 1, "on"}), 0);
    EXPECT_EQ(sheet.Code(sheet.At({"hat", 1, "mode"})), 4U);
    sheet.Edit(sheet.At(edited), 1);
    EXPECT_EQ(sheet.Code(sheet.At({"hat", 1, "mode"})), 0U);
  }
}

TEST(Sheet, TellsWhatTheBoardHoldsAndIsNotShown) {
  constexpr auto kFull = BoardFamily::kJoystick;
  struct Case {
    const char* what;
    const char* page;
    Bytes held;
    Place place;
    std::uint32_t shown;
    Mark mark;
    const char* note;
    int hidden;
    Bytes sent;  // the front of it
  };
  const Case cases[]{
      {"a mode that nothing stands for",
       "hat",
       {0x07, 0, 0x01, 0},
       {"hat", 1, "mode"},
       0,
       Mark::kHidden,
       "The board holds Incremental. Update replaces it by POV.",
       1,
       {0x01}},
      {"one of the other connector",
       "hat",
       {0x01, 0, 0x0D, 0},
       {"hat", 2, "mode"},
       0,
       Mark::kHidden,
       "The board holds code 6. Update replaces it by POV.",
       1,
       {0x01, 0, 0x01}},
      {"shown as what it is not",
       "hat",
       {0x0B, 0, 0x01, 0},
       {"hat", 1, "mode"},
       6,
       Mark::kCorrected,
       "The board holds ORB : 12-Bit DACs. Update replaces it by TARN20-XY.",
       0,
       {0x0D}},
      {"above its range",
       "analog",
       Bytes(24, 0xFF),
       {"analog", 1, "filter"},
       10,
       Mark::kCorrected,
       "The board holds code 15. Update replaces it by 10.",
       0,
       {0xAF}},
      {"on without an axis",
       "analog",
       Bytes(24, 0x03),
       {"analog", 1, "on"},
       1,
       Mark::kNone,
       "",
       0,
       {0x03}},
      {"axes of a channel that is off",
       "analog",
       Bytes(24, 0x04),
       {"analog", 1, "axis_z"},
       0,
       Mark::kHidden,
       "The board holds on. Update replaces it by off.",
       8,
       {0x04, 0x04, 0x00}},
      {"more percent than can be chosen",
       "axis_tweak",
       Bytes(32, 0xC8),
       {"axis", 1, "trim_min"},
       200,
       Mark::kNone,
       "",
       0,
       {0xC8, 200}},
      {"a mode and a decoding",
       "digital",
       Bytes(48, 0x50),
       {"input", 1, "mode"},
       0,
       Mark::kHidden,
       "The board holds code 5. Update replaces it by Normal.",
       16,
       {0x00}},
      {"the module behind a port that is off",
       "expansion",
       {0, 2},
       {"port", 1, "module"},
       1,
       Mark::kHidden,
       "The board holds Absolute SSI Encoders. Update replaces it by Lumen Card.",
       1,
       {0, 1}},
      {"the same module there",
       "expansion",
       {0, 1},
       {"port", 1, "module"},
       1,
       Mark::kNone,
       "",
       0,
       {0, 1}},
      {"a module of later boards",
       "expansion",
       {1, 9},
       {"port", 1, "module"},
       1,
       Mark::kHidden,
       "The board holds code 9. It is kept until another value is chosen.",
       1,
       {1, 9}},
      {"one that is off",
       "expansion",
       {0, 9},
       {"port", 1, "module"},
       1,
       Mark::kHidden,
       "The board holds code 9. Update replaces it by Lumen Card.",
       1,
       {0, 1}},
  };
  for (const Case& c : cases) {
    SCOPED_TRACE(c.what);
    OnePage sheet(kFull, c.page);
    sheet.Retrieved(0, c.held);
    const Cell cell = sheet.At(c.place);
    EXPECT_EQ(sheet.Code(cell), c.shown);
    EXPECT_EQ(sheet.MarkOf(cell), c.mark);
    EXPECT_EQ(sheet.NoteOf(cell), c.note);
    EXPECT_EQ(sheet.Hidden(), c.hidden);
    EXPECT_FALSE(sheet.AnyEdited());
    auto sent = sheet.Outgoing(0);
    EXPECT_EQ(Bytes(sent.begin(), sent.begin() + std::ptrdiff_t(c.sent.size())), c.sent);

    sheet.Edit(cell, c.shown);
    EXPECT_NE(sheet.MarkOf(cell), Mark::kHidden) << "chosen, though it is shown already";
    EXPECT_EQ(sheet.MarkOf(cell) == Mark::kEdited, c.mark == Mark::kHidden);
    sent = sheet.Outgoing(0);
    sheet.Stored(0, sent, sent.size());
    EXPECT_EQ(sheet.MarkOf(cell), Mark::kNone);
  }
}

TEST(Sheet, TellsThatAChannelIsStoredAsOffWithoutAnAxis) {
  OnePage sheet(BoardFamily::kJoystick, "analog");
  sheet.Retrieved(0, Bytes(24, 0));
  const Cell on = sheet.At({"analog", 1, "on"});
  const auto store = [&] {
    const auto sent = sheet.Outgoing(0);
    sheet.Stored(0, sent, sent.size());
    return sent[0];
  };
  sheet.Edit(on, 1);
  EXPECT_EQ(store(), 0);
  EXPECT_EQ(sheet.Code(on), 1U) << "stays the user's";
  EXPECT_EQ(sheet.MarkOf(on), Mark::kHidden);
  EXPECT_EQ(sheet.NoteOf(on), "The board holds off.");
  sheet.Edit(on, 0);
  EXPECT_EQ(sheet.MarkOf(on), Mark::kNone);
  sheet.Edit(on, 1);
  sheet.Edit(sheet.At({"analog", 1, "axis_y"}), 1);
  EXPECT_EQ(store(), 1);
  EXPECT_EQ(sheet.MarkOf(on), Mark::kNone);
}

TEST(Sheet, KnowsEachBlockAndEachByteForItself) {
  OnePage sheet(BoardFamily::kScanMatrix, "digital");
  const Cell front = sheet.At({"input", 59, "invert"}), back = sheet.At({"input", 60, "invert"});
  const Cell pair = sheet.At({"input", 1, "hold"});
  const auto marks = [&] {
    return std::vector{sheet.MarkOf(front), sheet.MarkOf(back), sheet.MarkOf(pair)};
  };
  for (const Cell cell : {front, back, pair}) sheet.Edit(cell, 1);
  EXPECT_FALSE(sheet.AnyEdited()) << "no board is known";
  sheet.Retrieved(0, Bytes(64, 0));
  for (const Cell cell : {front, back}) sheet.Edit(cell, 1);
  EXPECT_THAT(marks(), ElementsAre(Mark::kEdited, Mark::kEdited, Mark::kNone));
  const auto sent = sheet.Outgoing(0);
  sheet.Stored(0, sent, 59);
  EXPECT_THAT(marks(), ElementsAre(Mark::kNone, Mark::kEdited, Mark::kNone));
  sheet.Forget();
  EXPECT_THAT(marks(), ElementsAre(Mark::kNone, Mark::kNone, Mark::kNone));
  EXPECT_EQ(sheet.Code(back), 0U);
  EXPECT_EQ(sheet.Outgoing(0)[0], 0x01) << "the factory's";
}

TEST(Sheet, HoldsABlockForEveryPortOrForOne) {
  const std::string_view names[]{"Port A", "Port B", "Port C", "Port D", "Port E", "Port F"};
  const Setting setting{.id = "level", .title = "", .purpose = "", .field = {0, 0, 4}};
  const Table table{.id = "port",
                    .names = {.pattern = "", .names = names, .by_port = true},
                    .bits_a_row = 8,
                    .settings = {&setting, 1}};
  const Block block{.id = "", .way = Way::kNode, .bytes = 1, .tables = {&table, 1}};
  const Page page{.id = "", .title = "", .blocks = {&block, 1}, .about = About::kAllPorts};
  Sheet sheet(page);
  ASSERT_EQ(sheet.Exchanges().size(), 24U);
  EXPECT_EQ(sheet.Exchanges()[5].port.node, 2);
  EXPECT_EQ(sheet.Exchanges()[5].port.half, 1);
  sheet.Retrieved(5, Bytes{0xA7});
  const Cell cell = *sheet.Find("port", 6, "level");
  EXPECT_EQ(sheet.RowNameOf(cell), "Port F");
  EXPECT_EQ(sheet.Code(cell), 7U);
  sheet.Edit(cell, 1);
  EXPECT_EQ(sheet.Outgoing(5)[0], 0xA1);
  EXPECT_EQ(sheet.Outgoing(4)[0], 0);

  Page one_port = page;
  one_port.about = About::kPort;
  Sheet one(one_port);
  const Cell only = *one.Find("port", 1, "level");
  one.Retrieved(0, Bytes{0xA7});
  one.SetPort({.node = 1, .half = 1});
  ASSERT_EQ(one.Exchanges().size(), 1U);
  EXPECT_EQ(one.Exchanges()[0].port.node * 2 + one.Exchanges()[0].port.half, 3);
  EXPECT_EQ(one.RowNameOf(only), "Port D");
  EXPECT_EQ(one.Outgoing(0)[0], 0) << "nothing of another port is offered";
}

TEST(Sheet, NamesRowsAndColumnsAsItsRulesSay) {
  const Setting setting{.id = "level", .title = " Level ", .purpose = "", .field = {0, 0, 4}};
  const Table table{.id = "input",
                    .names = {.pattern = "Input %1", .first = 2, .step = 2, .last_named = 3},
                    .bits_a_row = 8,
                    .rows = 2,
                    .settings = {&setting, 1}};
  const Block block{.id = "", .bytes = 2, .tables = {&table, 1}};
  const Rules rules{.retrieved = [](Sheet& sheet, std::size_t) { sheet.NumberRows("input", 64); },
                    .edited = [](Sheet& sheet, Cell) { sheet.Retitle("level", "Normal"); },
                    .defaulted = [](Sheet& sheet) { sheet.NumberRows("input", 0); }};
  const Page page{.id = "", .title = "", .blocks = {&block, 1}, .rules = &rules};
  Sheet sheet(page);
  const Cell first = *sheet.Find("input", 2, "level"), second = *sheet.Find("input", 4, "level");
  const auto names = [&] { return sheet.RowNameOf(first) + ", " + sheet.RowNameOf(second); };
  EXPECT_EQ(names(), "Input 2, ") << "no name before somebody numbers the rows";
  sheet.Retrieved(0, Bytes{0, 0});
  EXPECT_EQ(names(), "Input 66, Input 68");
  sheet.LoadFactory();
  EXPECT_EQ(names(), "Input 2, Input 4");
  EXPECT_EQ(sheet.TitleOf(second), " Level ");
  sheet.Edit(first, 1);
  sheet.Retrieved(0, Bytes{0, 0});
  EXPECT_EQ(sheet.TitleOf(second), "Normal") << "stays";
}

// What a page and a tooltip say of a setting.
TEST(Sheet, DescribesItsSettings) {
  const struct {
    BoardFamily family;
    const char* page;
    Place place;
    const char* text;
    const char* description;
  } cases[]{
      {BoardFamily::kJoystick, "analog", {"analog", 2, "axis_x"}, "off", "several. Default: off."},
      {BoardFamily::kJoystick, "analog", {"analog", 2, "axis_y"}, "on", "several. Default: on."},
      {BoardFamily::kJoystick,
       "analog",
       {"analog", 1, "resolution"},
       "12 Bits",
       "4 Bits to 12 Bits. Default: 12 Bits."},
      {BoardFamily::kJoystick,
       "analog",
       {"encoder", 1, "resolution"},
       "12 Bits",
       "4 Bits to 13 Bits. Default: 12 Bits."},
      {BoardFamily::kJoystick,
       "digital",
       {"input", 2, "pulse_width"},
       "0",
       "0 to 255. Default: 0."},
      {BoardFamily::kJoystick,
       "hat",
       {"damping", 5, "damping"},
       "MID",
       "HI, MID, LO, OFF. Default: MID."},
      {BoardFamily::kSmallJoystick,
       "digital",
       {"board", 1, "scan_matrix"},
       "off",
       "Load page defaults leaves this as it is."},
  };
  for (const auto& c : cases) {
    const OnePage sheet(c.family, c.page);
    EXPECT_EQ(sheet.TextOf(sheet.At(c.place)), c.text);
    EXPECT_THAT(sheet.DescriptionOf(sheet.At(c.place)), ::testing::EndsWith(c.description));
  }
}

}  // namespace quillon::testing
