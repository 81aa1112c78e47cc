// SPDX-License-Identifier: MIT
#include <gmock/gmock.h>

#include "settings/SheetFixture.h"

namespace quillon::testing {
namespace {

constexpr auto kPorts = BoardFamily::kDigitalPorts;
constexpr auto kBanks = BoardFamily::kInputBanks;

struct Ports : Sheet {
  explicit Ports(BoardFamily family) : Sheet(PagesOf(family)[0]) {}

  Cell At(const char* table, int line, const char* setting) const {
    return *Find(table, line, setting);
  }
};

}  // namespace

TEST(DigitalPortSettings, HaveEveryFieldInItsPlace) {
  std::vector<Drawn> fields{{'m', "mode", "port"},
                            {'i', "invert", "port"},
                            {'o', "on", "port"},
                            {'e', "encoder", "port"}};
  ExpectLayout(PagesOf(kPorts)[0], 0, "mmmm__io ____eeee", fields, 2);
  for (Drawn& drawn : fields) drawn.table = "input";
  fields.push_back({'p', "pulse_width", "input"});
  ExpectLayout(PagesOf(kBanks)[0], 1, "mmmm__io pppppppp ____eeee", fields);
  ExpectLayout(PagesOf(kBanks)[0], 0, "MMMMMMMM bbbbMMMM",
               {{'M', "master_switch", "board"}, {'b', "bank", "board"}});
}

TEST(DigitalPortSettings, TravelAsTheBoardHoldsThem) {
  Ports ports(kPorts);
  ports.Retrieved(0, Bytes{0x00, 0x01,              // master switch 256
                           0x1F, 0xF3,              // toggle, kept bits, invert, on; GRAY 4X
                           0x21, 0x02,              // rotary, on; GRAY 2X
                           0x50, 0x04, 0, 0, 0, 0,  // codes that mean nothing
                           0, 0, 0, 0, 0, 0});
  EXPECT_EQ(CodesOf(ports, "board", 1), "master_switch=256");
  EXPECT_EQ(CodesOf(ports, "port", 1), "on=1 invert=1 mode=1 encoder=3");
  EXPECT_EQ(CodesOf(ports, "port", 2), "on=1 mode=3 encoder=2");
  EXPECT_EQ(CodesOf(ports, "port", 3), "") << "as before";
  ports.Edit(ports.At("port", 1, "invert"), 0);
  // Not the inverse of what was retrieved: leave it alone.
  EXPECT_EQ(ports.Outgoing(0), (Bytes{0x00, 0x01, 0x1D, 0xF3, 0x31, 0x02, 0, 0, 0,  //
                                      0, 0, 0, 0, 0, 0, 0, 0, 0}));

  Ports bank(kBanks);
  bank.Retrieved(0, Bytes{0x05, 0x20});
  EXPECT_EQ(CodesOf(bank, "board", 1), "master_switch=5 bank=2");
  Bytes inputs(96);
  const Bytes front{0x2F, 0x19, 0xF0,   // pulse, bits that are kept, invert, on; 250 ms
                    0x51, 0xFF, 0x04};  // codes that mean nothing, on; 2550 ms
  std::ranges::copy(front, inputs.begin());
  inputs[93] = 0x41;  // input 32: rotary, on
  inputs[95] = 0x02;  // GRAY 2X
  bank.Retrieved(1, inputs);
  EXPECT_EQ(CodesOf(bank, "input", 1), "on=1 invert=1 mode=2 pulse_width=25");
  EXPECT_EQ(CodesOf(bank, "input", 2), "on=1 pulse_width=255");
  EXPECT_EQ(CodesOf(bank, "input", 32), "on=1 mode=4 encoder=2");
  bank.Edit(bank.At("board", 1, "bank"), 15);
  bank.Edit(bank.At("board", 1, "master_switch"), 256);
  EXPECT_EQ(bank.Outgoing(0), (Bytes{0x00, 0xF1}));
  inputs[3] = 0x01, inputs[5] = 0x00;
  EXPECT_EQ(bank.Outgoing(1), inputs);
}

TEST(DigitalPortSettings, ApplyTheirRules) {
  const struct {
    BoardFamily family;
    std::vector<std::tuple<int, const char*, std::uint32_t>> edits;
    std::vector<std::pair<int, const char*>> then;
  } cases[]{
      {kPorts,
       {{1, "mode", 1}, {8, "mode", 2}, {5, "mode", 2}, {6, "encoder", 3}},
       {{1, "on=1"}, {5, "on=1 mode=2"}, {6, "on=1 encoder=3"}, {8, "on=1"}}},
      {kPorts, {{5, "mode", 2}, {1, "mode", 1}}, {{1, "on=1 mode=1"}, {5, "on=1 mode=2"}}},
      // A pair is Rotary on both inputs or on neither.
      {kBanks, {{4, "mode", 4}}, {{3, "on=1 mode=4"}, {5, "on=1"}}},
      {kBanks, {{31, "mode", 4}, {32, "mode", 3}}, {{31, "on=1"}, {32, "on=1 mode=3"}}},
      {kBanks, {{3, "encoder", 2}}, {{3, "on=1 encoder=2"}, {4, "on=1 encoder=2"}}},
  };
  for (const auto& c : cases) {
    SCOPED_TRACE(&c - cases);
    const char* const table = c.family == kPorts ? "port" : "input";
    Ports sheet(c.family);
    for (const auto& [line, setting, code] : c.edits)
      sheet.Edit(sheet.At(table, line, setting), code);
    for (const auto& [line, codes] : c.then) EXPECT_EQ(CodesOf(sheet, table, line), codes);
  }
}

TEST(DigitalPortSettings, TellWhatTheBoardHoldsAndIsNotShown) {
  Ports ports(kPorts);
  const Cell master = ports.At("board", 1, "master_switch"), mode = ports.At("port", 1, "mode");
  Bytes held(18);
  held[0] = 300 & 0xFF, held[1] = 300 >> 8, held[2] = 0x20;
  ports.Retrieved(0, held);
  EXPECT_EQ(ports.MarkOf(master), Mark::kHidden);
  EXPECT_EQ(ports.NoteOf(master),
            "The board holds a value that this page does not offer: code 300. Update replaces it "
            "by None.");
  EXPECT_EQ(ports.MarkOf(mode), Mark::kCorrected);
  EXPECT_EQ(ports.NoteOf(mode),
            "The board holds Rotary (code 2). Update replaces it by Rotary (code 3).");
  EXPECT_EQ(ports.Hidden(), 1);
  const Bytes sent = ports.Outgoing(0);
  EXPECT_EQ(Bytes(sent.begin(), sent.begin() + 3), (Bytes{0x00, 0x00, 0x30}));
  ports.Stored(0, sent, sent.size());
  ports.Retrieved(0, sent);
  EXPECT_EQ(ports.MarkOf(mode), Mark::kNone) << "it shows just what it stored";
  EXPECT_EQ(ports.Hidden(), 0);
}

}  // namespace quillon::testing
