// SPDX-License-Identifier: MIT
#include <gmock/gmock.h>

#include "settings/SheetFixture.h"

namespace quillon::testing {
namespace {

constexpr auto kPorts = BoardFamily::kDigitalPorts;
constexpr auto kBanks = BoardFamily::kInputBanks;

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
  Sheet ports(PagesOf(kPorts)[0]);
  ports.Retrieved(0, Bytes{0x00, 0x01,              // master switch 256
                           0x1F, 0xF3,              // toggle, kept bits, invert, on; GRAY 4X
                           0x21, 0x02,              // rotary, on; GRAY 2X
                           0x50, 0x04, 0, 0, 0, 0,  // codes that mean nothing
                           0, 0, 0, 0, 0, 0});
  EXPECT_EQ(CodesOf(ports, "board", 1), "master_switch=256");
  EXPECT_EQ(CodesOf(ports, "port", 1), "on=1 invert=1 mode=1 encoder=3");
  EXPECT_EQ(CodesOf(ports, "port", 2), "on=1 mode=3 encoder=2");
  EXPECT_EQ(CodesOf(ports, "port", 3), "") << "as before";
  ports.Edit(At(ports, "port 1 invert"), 0);
  // Not the inverse of what was retrieved: leave it alone.
  EXPECT_EQ(ports.Outgoing(0), (Bytes{0x00, 0x01, 0x1D, 0xF3, 0x31, 0x02, 0, 0, 0,  //
                                      0, 0, 0, 0, 0, 0, 0, 0, 0}));

  Sheet bank(PagesOf(kBanks)[0]);
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
  bank.Edit(At(bank, "board 1 bank"), 15);
  bank.Edit(At(bank, "board 1 master_switch"), 256);
  EXPECT_EQ(bank.Outgoing(0), (Bytes{0x00, 0xF1}));
  inputs[3] = 0x01, inputs[5] = 0x00;
  EXPECT_EQ(bank.Outgoing(1), inputs);
}

}  // namespace quillon::testing
