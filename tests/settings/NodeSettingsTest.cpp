// SPDX-License-Identifier: MIT
#include <gmock/gmock.h>

#include <tuple>

#include "settings/NodeSettings.h"
#include "settings/SheetFixture.h"
#include "testing/link/TranscriptLibrary.h"

namespace quillon::testing {

TEST(NodeSettings, HaveEveryFieldInItsPlace) {
  const std::vector<Drawn> port{
      {'m', "mode", "port"}, {'i', "direction", "port"}, {'o', "on", "port"}};
  ExpectLayout(*FindPortPage("io_port"), 0, "00mmmmio 00000000", port);
  ExpectLayout(*FindPortPage("direct_outputs"), 0, "0000000o", {{'o', "on", "output"}});
  ExpectLayout(*FindPortPage("glcd"), 0, "rrrrrrrr", {{'r', "resolution", "display"}});
  ExpectLayout(*FindPortPage("spi_dac"), 0, "__bbdddd",
               {{'b', "bits", "channel"}, {'d', "damping", "channel"}});
}

// Ports A, B, C and X: the first and the second of a node, the next node, the last one.
TEST(NodeSettings, RequestsNameFunctionNodeAndPort) {
  struct Golden {
    const char* page;
    const char* reads[4];
    const char* answer;
    const char* writes[4];
    const char* echo;
  };
  const Golden golden[]{
      {"io_port",
       {"00 00 06 02 1c 00 25 00 02", "00 00 08 02 1c 00 25 00 02", "00 00 06 02 1c 00 25 01 02",
        "00 00 08 02 1c 00 25 0b 02"},
       "25 19 00",
       {"00 02 06 02 1c 01 26 00 00 19 00", "00 02 08 02 1c 01 26 00 00 19 00",
        "00 02 06 02 1c 01 26 01 00 19 00", "00 02 08 02 1c 01 26 0b 00 19 00"},
       "26"},
      {"direct_outputs",
       {"00 00 0a 0f 1c 00 27 00 0f", "00 00 19 0f 1c 00 27 00 0f", "00 00 0a 0f 1c 00 27 01 0f",
        "00 00 19 0f 1c 00 27 0b 0f"},
       "27 01 00 00 00 00 00 00 00 00 00 00 00 00 00 01",
       {"00 0f 0a 0f 1c 01 28 00 00 01 00 00 00 00 00 00 00 00 00 00 00 00 00 01",
        "00 0f 19 0f 1c 01 28 00 00 01 00 00 00 00 00 00 00 00 00 00 00 00 00 01",
        "00 0f 0a 0f 1c 01 28 01 00 01 00 00 00 00 00 00 00 00 00 00 00 00 00 01",
        "00 0f 19 0f 1c 01 28 0b 00 01 00 00 00 00 00 00 00 00 00 00 00 00 00 01"},
       "28"},
      {"glcd",
       {"00 00 28 01 1c 00 34 00 01", "00 00 29 01 1c 00 34 00 01", "00 00 28 01 1c 00 34 01 01",
        "00 00 29 01 1c 00 34 0b 01"},
       "34 02",
       {"00 01 28 01 1c 01 35 00 00 02", "00 01 29 01 1c 01 35 00 00 02",
        "00 01 28 01 1c 01 35 01 00 02", "00 01 29 01 1c 01 35 0b 00 02"},
       "35"},
      {"spi_dac",
       {"00 00 2a 0a 1c 00 14 00 0a", "00 00 34 0a 1c 00 14 00 0a", "00 00 2a 0a 1c 00 14 01 0a",
        "00 00 34 0a 1c 00 14 0b 0a"},
       "14 d3 00 00 00 00 00 00 00 00 31",
       {"00 0a 2a 0a 1c 01 10 00 00 d3 00 00 00 00 00 00 00 00 31",
        "00 0a 34 0a 1c 01 10 00 00 d3 00 00 00 00 00 00 00 00 31",
        "00 0a 2a 0a 1c 01 10 01 00 d3 00 00 00 00 00 00 00 00 31",
        "00 0a 34 0a 1c 01 10 0b 00 d3 00 00 00 00 00 00 00 00 31"},
       "10"},
  };
  const NodePort ports[]{{0, 0}, {0, 1}, {1, 0}, {11, 1}};
  for (const Golden& c : golden) {
    for (std::size_t i = 0; i < 4; ++i) {
      SCOPED_TRACE(std::string(c.page) + ", " + c.reads[i]);
      const std::string read = std::string("write 0 -> 0 : ") + c.reads[i] + " *\nread 0 -> 0 : ";
      const std::string write = std::string("write 0 -> 0 : ") + c.writes[i] + " *\nread 0 -> 0 : ";
      TranscriptLibrary library(read + c.answer + " *\n" + write + c.echo + " *");
      DeviceRecord board{};
      Sheet sheet(*FindPortPage(c.page));
      sheet.SetPort(ports[i]);
      const auto& [block, port] = sheet.Exchanges()[0];
      Bytes bytes(block->bytes);
      EXPECT_TRUE(ReadBlock(library, board, *block, bytes, port).IsDone());
      sheet.Retrieved(0, bytes);
      EXPECT_TRUE(WriteBlock(library, board, *block, sheet.Outgoing(0), port).IsDone());
    }
  }
}

TEST(NodeSettings, ShowWhatABoardHoldsAndSayWhatBecomesOfTheRest) {
  struct Case {
    const char* page;
    const char* table;
    std::uint8_t held;  // the block's first byte
    const char* codes;
    Mark mark;  // of `setting`
    const char* setting;
    std::uint8_t sent;
  };
  const Case cases[]{
      {"io_port", "port", 0x07, "on=1 direction=1 mode=1", Mark::kNone, "direction", 0x07},
      {"io_port", "port", 0xDF, "on=1 direction=1 mode=7", Mark::kNone, "mode", 0x1F},
      // Mode 9: the page goes on showing the one before, which an update stores.
      {"io_port", "port", 0x25, "on=1", Mark::kHidden, "mode", 0x01},
      {"direct_outputs", "output", 0xFE, "", Mark::kNone, "on", 0x00},
      {"glcd", "display", 0x05, "", Mark::kHidden, "resolution", 0x05},
      {"spi_dac", "channel", 0x27, "damping=3 bits=2", Mark::kCorrected, "damping", 0x23},
      {"spi_dac", "channel", 0xF1, "damping=1 bits=3", Mark::kNone, "damping", 0xF1},
  };
  for (const Case& c : cases) {
    SCOPED_TRACE(std::string(c.page) + ' ' + std::to_string(c.held));
    Sheet sheet(*FindPortPage(c.page));
    Bytes bytes(sheet.Exchanges()[0].block->bytes);
    bytes[0] = c.held;
    sheet.Retrieved(0, bytes);
    EXPECT_EQ(CodesOf(sheet, c.table, 1), c.codes);
    EXPECT_EQ(sheet.MarkOf(*sheet.Find(c.table, 1, c.setting)), c.mark);
    EXPECT_EQ(sheet.Outgoing(0)[0], c.sent);
  }

  Sheet display(*FindPortPage("glcd"));
  display.Retrieved(0, Bytes{5});
  const Cell resolution = *display.Find("display", 1, "resolution");
  EXPECT_EQ(display.NoteOf(resolution),
            "The board holds code 5. It is kept until another value is chosen.");
  display.Edit(resolution, 0);
  EXPECT_EQ(display.Outgoing(0)[0], 0) << "the only entry can be chosen instead";
}

TEST(NodeSettings, StartAsInTheFactoryWithNothingOfABoard) {
  const std::pair<const char*, Bytes> factory[]{{"io_port", Bytes(2, 0)},
                                                {"direct_outputs", Bytes(15, 1)},
                                                {"glcd", Bytes(1, 0)},
                                                {"spi_dac", Bytes(10, 0)}};
  for (const auto& [page, bytes] : factory) {
    SCOPED_TRACE(page);
    Sheet sheet(*FindPortPage(page));
    EXPECT_EQ(sheet.Outgoing(0), bytes);
    // Bits that are kept are those of the board, also under the factory's values.
    Bytes kept(bytes.size(), 0xFF);
    sheet.Retrieved(0, kept);
    sheet.LoadFactory();
    const std::uint8_t more = std::string_view(page) == "spi_dac" ? 0xC0 : 0;
    for (std::size_t i = 0; i < bytes.size(); ++i) EXPECT_EQ(sheet.Outgoing(0)[i], bytes[i] | more);
    sheet.SetPort({.node = 3});
    EXPECT_EQ(sheet.Outgoing(0), bytes);
  }
}

TEST(NodeSettings, CanBeChosenByTheirTextsAndInputCannot) {
  const std::tuple<const char*, const char*, const char*, const char*> offers[]{
      {"io_port", "port", "direction", "Output=0"},
      {"io_port", "port", "mode",
       "Direct=0 Multiplexed=1 CRT RWR=2 GLCD=3 8-bit DACs=4 Latched=5 SPI=6 Dot Matrix=7"},
      {"glcd", "display", "resolution", "192x64=0"},
      {"spi_dac", "channel", "damping", "HI=3 MID=2 LO=1 OFF=0"},
      {"spi_dac", "channel", "bits", "10=0 16=1 24=2 32=3"},
  };
  for (const auto& [page, table, setting, listed] : offers) {
    const Sheet sheet(*FindPortPage(page));
    std::string list;
    for (const auto& [text, code] : OffersOf(sheet.SettingOf(*sheet.Find(table, 1, setting))))
      list += (list.empty() ? "" : " ") + text + '=' + std::to_string(code);
    EXPECT_EQ(list, listed);
  }
}

TEST(NodeSettings, AreThoseOfTwentyFourPortsNamedFromAToX) {
  Sheet sheet(NodeSystemPages().front());
  ASSERT_EQ(sheet.Exchanges().size(), 24U);
  for (const auto& [port, name] : {std::pair(1, "Port A"), {4, "Port D"}, {24, "Port X"}}) {
    const Cell cell = *sheet.Find("port", port, "on");
    EXPECT_EQ(sheet.RowNameOf(cell), name);
    Sheet one(*FindPortPage("io_port"));
    one.SetPort(sheet.Exchanges()[static_cast<std::size_t>(port) - 1].port);
    EXPECT_EQ(one.RowNameOf(*one.Find("port", 1, "on")), name);
  }
}

}  // namespace quillon::testing
