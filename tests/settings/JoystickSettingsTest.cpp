// SPDX-License-Identifier: MIT
#include "settings/SheetFixture.h"

namespace quillon::testing {
namespace {

constexpr auto kFull = BoardFamily::kJoystick;
constexpr auto kSmall = BoardFamily::kSmallJoystick;
constexpr auto kMatrix = BoardFamily::kScanMatrix;

}  // namespace

TEST(JoystickSettings, HaveEveryFieldInItsPlace) {
  const auto axes = [](std::vector<Drawn> settings, std::string_view table) {
    char letter = '1';
    for (const char* const axis :
         {"axis_x", "axis_y", "axis_z", "axis_rx", "axis_ry", "axis_rz", "axis_s1", "axis_s2"})
      settings.push_back({letter++, axis, table});
    for (Drawn& drawn : settings) drawn.table = table;
    return settings;
  };
  const Page& analog = *FindPage(kFull, "analog");
  ExpectLayout(
      analog, 0, "ffff_iso ____rrrr 87654321",
      axes({{'f', "filter"}, {'i', "invert"}, {'s', "spike"}, {'o', "on"}, {'r', "resolution"}},
           "analog"));
  // Six encoders; the incremental channel's record follows them.
  const Block encoders{.id = "", .bytes = 18, .tables = analog.blocks[1].tables.first(1)};
  const Page of_encoders{.id = "", .title = "", .blocks = {&encoders, 1}};
  ExpectLayout(of_encoders, 0, "rrrr_ino ___ccccc 87654321",
               axes({{'r', "resolution"},
                     {'i', "invert"},
                     {'n', "incremental"},
                     {'o', "on"},
                     {'c', "centering_button"}},
                    "encoder"));
  Page of_both = analog;
  of_both.blocks = analog.blocks.subspan(1);
  ExpectLayout(of_both, 0, "rrrr_i0o ___ccccc 87654321",
               axes({{'r', "resolution"}, {'i', "invert"}, {'o', "on"}, {'c', "centering_button"}},
                    "incremental"),
               18);
  ExpectLayout(*FindPage(kFull, "axis_tweak"), 0, "___ccc0a iiiiiiii dddddddd xxxxxxxx",
               {{'c', "combine", "axis"},
                {'a', "active", "axis"},
                {'i', "trim_min", "axis"},
                {'d', "deadzone", "axis"},
                {'x', "trim_max", "axis"}});
  const std::vector<Drawn> input{{'m', "mode", "input"},        {'i', "invert", "input"},
                                 {'M', "master", "input"},      {'o', "on", "input"},
                                 {'p', "pulse_width", "input"}, {'e', "encoder", "input"}};
  ExpectLayout(*FindPage(kFull, "digital"), 0, "mmmm_iMo pppppppp ____eeee", input);
  ExpectLayout(*FindPage(kSmall, "digital"), 0, "mmmm_iMo pppppppp ____eeee", input, 1);
  const std::vector<Drawn> hat{{'m', "mode", "hat"}, {'o', "on", "hat"}};
  ExpectLayout(*FindPage(kSmall, "hat"), 0, "____mmmo 00000000", hat);
  auto damped = hat;
  for (int channel = 1; channel <= 4; ++channel)
    damped.push_back({static_cast<char>('0' + channel), "damping", "damping", channel, 4});
  ExpectLayout(*FindPage(kFull, "hat"), 0, "____mmmo 44332211", damped);
  for (const auto family : {kFull, kMatrix})
    ExpectLayout(*FindPage(family, "expansion"), 0, "0000000a mmmmmmmm",
                 {{'a', "active", "port"}, {'m', "module", "port"}});
  ExpectLayout(*FindPage(kMatrix, "digital"), 0, "mmmm_Mio",
               {{'m', "mode", "input"},
                {'M', "master", "input"},
                {'i', "invert", "input"},
                {'o', "on", "input"}});
  ExpectLayout(*FindPage(kMatrix, "digital"), 1, "___heeee pppppppp qqqqqqqq",
               {{'h', "hold", "input", 1, 2},
                {'e', "encoder", "input", 1, 2},
                {'p', "push", "input", 1, 2},
                {'q', "pull", "input", 1, 2}});
}

// As an update of a page sends them that has never retrieved anything.
TEST(JoystickSettings, AreInTheFactoryWhatTheirPagesSayOfDefaults) {
  struct Case {
    BoardFamily family;
    const char* page;
    std::size_t exchange;
    const char* sent;
  };
  const Case cases[]{
      {kFull, "analog", 0, "510b01 510b02 510b04 510b08 510b10 510b20 510b40 510b80"},
      {kFull, "analog", 1, "b00000 b00000 b00000 b00000 b00000 b00000 f00000"},
      {kFull, "axis_tweak", 0,
       "00000000 04000000 08000000 0c000000 10000000 14000000 18000000 1c000000"},
      {kFull, "digital", 0, "*010000"},
      {kFull, "hat", 0, "01aa 01aa"},
      {kFull, "expansion", 0, "0001"},
      {kSmall, "analog", 0, "510b01 510b02 510b04 510b08 510b10 510b20 510b40 510b80"},
      {kSmall, "digital", 0, "00 *010000"},
      {kSmall, "hat", 0, "0100 0100"},
      {kMatrix, "digital", 0, "*01"},
      {kMatrix, "digital", 1, "*000000"},
      {kMatrix, "expansion", 0, "0001"},
  };
  for (const Case& c : cases) {
    SCOPED_TRACE(std::string(c.page) + ' ' + std::to_string(c.exchange));
    const Sheet sheet(*FindPage(c.family, c.page));
    EXPECT_EQ(sheet.Outgoing(c.exchange), Hex(c.sent, sheet.Exchanges()[c.exchange].block->bytes));
  }
}

// Not the inverse of what an update sends. Boards and their users rely on it: leave it alone.
TEST(JoystickSettings, ShowTheModesOfHatsByATableOfItsOwn) {
  const struct {
    std::uint8_t held;
    std::uint32_t hat1, hat2;
  } cases[]{{0, 0, 0}, {1, 1, 1}, {2, 3, 2}, {3, 5, 2}, {4, 4, 4}, {5, 6, 2}, {6, 6, 2}, {7, 5, 2}};
  for (const auto& c : cases) {
    Sheet sheet(*FindPage(kFull, "hat"));
    const Cell hat1 = *sheet.Find("hat", 1, "mode"), hat2 = *sheet.Find("hat", 2, "mode");
    sheet.Set(hat1, 5);
    sheet.Set(hat2, 2);
    const auto byte = static_cast<std::uint8_t>(c.held << 1);
    sheet.Retrieved(0, Bytes{byte, 0, byte, 0});
    EXPECT_EQ(sheet.Code(hat1), c.hat1) << int(c.held);
    EXPECT_EQ(sheet.Code(hat2), c.hat2) << int(c.held);
    EXPECT_EQ(sheet.Outgoing(0)[0], c.hat1 << 1);
  }
}

}  // namespace quillon::testing
