// SPDX-License-Identifier: MIT
#include <gmock/gmock.h>

#include <cstring>

#include "settings/SheetFixture.h"

namespace quillon::testing {
namespace {

using ::testing::ElementsAre;

constexpr auto kFull = BoardFamily::kJoystick;
constexpr auto kSmall = BoardFamily::kSmallJoystick;
constexpr auto kMatrix = BoardFamily::kScanMatrix;
constexpr auto kPorts = BoardFamily::kDigitalPorts;
constexpr auto kBanks = BoardFamily::kInputBanks;

}  // namespace

TEST(Sheet, AppliesTheRulesOfItsPage) {
  const struct {
    BoardFamily family;
    const char* page;
    const char* edits;
    const char* then;
  } cases[]{
      // One channel at most drives an axis; a channel may drive several.
      {kFull, "analog", "analog 3 axis_x 1",
       "analog 3 axis_x 1, analog 3 axis_z 1, analog 1 axis_x 0"},
      {kFull, "analog", "encoder 1 axis_x 1, incremental 1 axis_y 1",
       "analog 1 axis_x 0, analog 2 axis_y 0, encoder 1 on 0"},
      // A pair is Rotary on both inputs or on neither.
      {kFull, "digital", "input 4 mode 4", "input 3 mode 4"},
      {kFull, "digital", "input 4 mode 4, input 3 mode 1", "input 4 mode 0, input 3 mode 1"},
      {kFull, "digital", "input 5 mode 2, input 6 mode 1", "input 5 mode 2"},
      {kMatrix, "digital", "input 63 mode 2, input 64 mode 1", "input 63 mode 0"},
      {kMatrix, "digital", "input 64 mode 2", "input 63 mode 2"},
      {kFull, "digital", "input 7 encoder 2", "input 8 encoder 2"},
      {kFull, "digital", "input 2 master 1, input 9 master 1",
       "input 2 master 0, input 9 master 1"},
      {kFull, "hat", "hat 1 mode 4", "hat 2 mode 4"},
      {kFull, "hat", "hat 2 mode 4", "hat 1 mode 4"},
      {kFull, "hat", "hat 2 mode 4, hat 2 mode 1", "hat 1 mode 0, hat 2 mode 1"},
      {kFull, "hat", "hat 1 mode 4, hat 1 mode 6", "hat 1 mode 6, hat 2 mode 0"},
      {kFull, "hat", "hat 1 mode 3, hat 2 mode 1", "hat 1 mode 3, hat 2 mode 1"},
      // One port at most is Rotary.
      {kPorts, "ports", "port 1 mode 1, port 8 mode 2, port 5 mode 2, port 6 encoder 3",
       "port 1 mode 0, port 5 mode 2, port 5 encoder 0, port 6 encoder 3, port 8 mode 0"},
      {kPorts, "ports", "port 5 mode 2, port 1 mode 1", "port 1 mode 1, port 5 mode 2"},
      {kBanks, "ports", "input 4 mode 4", "input 3 mode 4, input 5 mode 0"},
      {kBanks, "ports", "input 31 mode 4, input 32 mode 3", "input 31 mode 0, input 32 mode 3"},
      {kBanks, "ports", "input 3 encoder 2",
       "input 3 encoder 2, input 4 encoder 2, input 4 mode 0"},
  };
  for (const auto& c : cases) {
    SCOPED_TRACE(c.edits);
    Sheet sheet(*FindPage(c.family, c.page));
    for (const auto& [cell, code] : CodesAt(sheet, c.edits)) sheet.Edit(cell, code);
    for (const auto& [cell, code] : CodesAt(sheet, c.then))
      EXPECT_EQ(sheet.Code(cell), code) << sheet.RowNameOf(cell) << ' ' << sheet.SettingOf(cell).id;
  }
}

// A board that holds a FALCO on one connector shows it until the next choice, of the damping too.
TEST(Sheet, TakesALoneFalcoAwayWithTheNextChoice) {
  for (const char* const edited : {"damping 1 damping", "hat 2 mode"}) {
    Sheet sheet(*FindPage(kFull, "hat"));
    sheet.Retrieved(0, Bytes{0x09, 0, 0x03, 0});
    sheet.Edit(At(sheet, "hat 1 on"), 0);
    EXPECT_EQ(sheet.Code(At(sheet, "hat 1 mode")), 4U);
    sheet.Edit(At(sheet, edited), 1);
    EXPECT_EQ(sheet.Code(At(sheet, "hat 1 mode")), 0U);
  }
}

TEST(Sheet, TellsWhatTheBoardHoldsAndIsNotShown) {
  using enum Mark;
  const struct {
    BoardFamily family;
    const char* page;
    const char* place;
    const char* held;
    std::uint32_t shown;
    const char* sent;  // the front of it
    Mark mark;
    int hidden;
    std::string note;
  } cases[]{
      // Modes of HATs that nothing stands for, that are the other connector's, that look like one.
      {kFull, "hat", "hat 1 mode", "07000100", 0, "01", kHidden, 1,
       "Incremental. Update replaces it by POV."},
      {kFull, "hat", "hat 2 mode", "01000D00", 0, "010001", kHidden, 1,
       "code 6. Update replaces it by POV."},
      {kFull, "hat", "hat 1 mode", "0B000100", 6, "0D", kCorrected, 0,
       "ORB : 12-Bit DACs. Update replaces it by TARN20-XY."},
      {kFull, "analog", "analog 1 filter", "*FF", 10, "AF", kCorrected, 0,
       "code 15. Update replaces it by 10."},
      {kFull, "analog", "analog 1 on", "*03", 1, "03", kNone, 0, ""},
      // Axes of a channel that is off.
      {kFull, "analog", "analog 1 axis_z", "*04", 0, "040400", kHidden, 8,
       "on. Update replaces it by off."},
      {kFull, "axis_tweak", "axis 1 trim_min", "*C8", 200, "C8C8", kNone, 0, ""},
      {kFull, "digital", "input 1 mode", "*50", 0, "00", kHidden, 16,
       "code 5. Update replaces it by Normal."},
      // The module behind a port that is off, and modules of later boards.
      {kFull, "expansion", "port 1 module", "0002", 1, "0001", kHidden, 1,
       "Absolute SSI Encoders. Update replaces it by Lumen Card."},
      {kFull, "expansion", "port 1 module", "0001", 1, "0001", kNone, 0, ""},
      {kFull, "expansion", "port 1 module", "0109", 1, "0109", kHidden, 1,
       "code 9. It is kept until another value is chosen."},
      {kFull, "expansion", "port 1 module", "0009", 1, "0001", kHidden, 1,
       "code 9. Update replaces it by Lumen Card."},
      {kPorts, "ports", "board 1 master_switch", "2C01 *00", 0, "0000", kHidden, 1,
       "a value that this page does not offer: code 300. Update replaces it by None."},
      {kPorts, "ports", "port 1 mode", "0000 20 *00", 3, "000030", kCorrected, 0,
       "Rotary (code 2). Update replaces it by Rotary (code 3)."},
  };
  for (const auto& c : cases) {
    SCOPED_TRACE(std::string(c.place) + ' ' + c.held);
    Sheet sheet(*FindPage(c.family, c.page));
    sheet.Retrieved(0, Hex(c.held, sheet.Exchanges()[0].block->bytes));
    const Cell cell = At(sheet, c.place);
    EXPECT_EQ(sheet.Code(cell), c.shown);
    EXPECT_EQ(sheet.MarkOf(cell), c.mark);
    EXPECT_EQ(sheet.NoteOf(cell), c.note.empty() ? "" : "The board holds " + c.note);
    EXPECT_EQ(sheet.Hidden(), c.hidden);
    EXPECT_FALSE(sheet.AnyEdited());
    auto sent = sheet.Outgoing(0);
    const Bytes front = Hex(c.sent, std::strlen(c.sent) / 2);
    EXPECT_TRUE(std::equal(front.begin(), front.end(), sent.begin()));

    sheet.Edit(cell, c.shown);
    EXPECT_NE(sheet.MarkOf(cell), kHidden) << "chosen, though it is shown already";
    EXPECT_EQ(sheet.MarkOf(cell) == kEdited, c.mark == kHidden);
    sent = sheet.Outgoing(0);
    sheet.Stored(0, sent, sent.size());
    EXPECT_EQ(sheet.MarkOf(cell), kNone);
    sheet.Retrieved(0, sent);
    EXPECT_EQ(sheet.MarkOf(cell), kNone) << "it shows just what it stored";
  }
}

TEST(Sheet, TellsThatAChannelIsStoredAsOffWithoutAnAxis) {
  Sheet sheet(*FindPage(kFull, "analog"));
  sheet.Retrieved(0, Bytes(24, 0));
  const Cell on = At(sheet, "analog 1 on");
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
  sheet.Edit(At(sheet, "analog 1 axis_y"), 1);
  EXPECT_EQ(store(), 1);
  EXPECT_EQ(sheet.MarkOf(on), Mark::kNone);
}

TEST(Sheet, KnowsEachBlockAndEachByteForItself) {
  Sheet sheet(*FindPage(kMatrix, "digital"));
  const Cell front = At(sheet, "input 59 invert"), back = At(sheet, "input 60 invert");
  const Cell pair = At(sheet, "input 1 hold");
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
    const char* place;
    const char* text;
    const char* description;
  } cases[]{
      {kFull, "analog", "analog 2 axis_x", "off", "several. Default: off."},
      {kFull, "analog", "analog 2 axis_y", "on", "several. Default: on."},
      {kFull, "analog", "analog 1 resolution", "12 Bits", "4 Bits to 12 Bits. Default: 12 Bits."},
      {kFull, "analog", "encoder 1 resolution", "12 Bits", "4 Bits to 13 Bits. Default: 12 Bits."},
      {kFull, "digital", "input 2 pulse_width", "0", "0 to 255. Default: 0."},
      {kFull, "hat", "damping 5 damping", "MID", "HI, MID, LO, OFF. Default: MID."},
      {kFull, "hat", "hat 1 mode", "POV",
       "POV, Digital, Incremental, FALCO, ORB : 12-Bit DACs, TARN20-XY. Default: POV."},
      {kFull, "hat", "hat 2 mode", "POV",
       "POV, Digital, ORB : Shifter Display, FALCO. Default: POV."},
      {kSmall, "digital", "board 1 scan_matrix", "off", "Load page defaults leaves this as it is."},
  };
  for (const auto& c : cases) {
    const Sheet sheet(*FindPage(c.family, c.page));
    const Cell cell = At(sheet, c.place);
    EXPECT_EQ(sheet.TextOf(cell), c.text);
    EXPECT_THAT(sheet.DescriptionOf(cell), ::testing::EndsWith(c.description));
  }
}

}  // namespace quillon::testing
