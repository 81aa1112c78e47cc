// SPDX-License-Identifier: MIT
#include <gmock/gmock.h>

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

TEST(NodeSettings, RequestsNameFunctionNodeAndPort) {
  const struct {
    const char* page;
    std::string read, write;  // node functions
    std::string size;
    std::string offsets[2];  // of a node's two ports
    std::string data;
  } blocks[]{{"io_port", "25", "26", "02", {"06", "08"}, "19 00"},
             {"direct_outputs",
              "27",
              "28",
              "0f",
              {"0a", "19"},
              "01 00 00 00 00 00 00 00 00 00 00 00 00 00 01"},
             {"glcd", "34", "35", "01", {"28", "29"}, "02"},
             {"spi_dac", "14", "10", "0a", {"2a", "34"}, "d3 00 00 00 00 00 00 00 00 31"}};
  const struct {
    const char* name;
    NodePort port;
    std::string node;
  } ports[]{{"A", {0, 0}, "00"}, {"B", {0, 1}, "00"}, {"C", {1, 0}, "01"}, {"X", {11, 1}, "0b"}};
  for (const auto& [page, read, write, size, offsets, data] : blocks) {
    for (const auto& [name, about, node] : ports) {
      SCOPED_TRACE(std::string(page) + ", port " + name);
      const std::string at = offsets[about.half] + ' ' + size + " 1c ";
      TranscriptLibrary library("write 0 -> 0 : 00 00 " + at + "00 " + read + ' ' + node + ' ' +
                                size + " *\nread 0 -> 0 : " + read + ' ' + data +
                                " *\nwrite 0 -> 0 : 00 " + size + ' ' + at + "01 " + write + ' ' +
                                node + " 00 " + data + " *\nread 0 -> 0 : " + write + " *");
      DeviceRecord board{};
      Sheet sheet(*FindPortPage(page));
      sheet.SetPort(about);
      const auto& [block, port] = sheet.Exchanges()[0];
      Bytes bytes(block->bytes);
      EXPECT_TRUE(ReadBlock(library, board, *block, bytes, port).IsDone());
      sheet.Retrieved(0, bytes);
      EXPECT_TRUE(WriteBlock(library, board, *block, sheet.Outgoing(0), port).IsDone());
    }
  }
}

TEST(NodeSettings, ShowWhatABoardHoldsAndSayWhatBecomesOfTheRest) {
  const struct {
    const char* page;
    const char* table;
    std::uint8_t held;  // the block's first byte
    const char* codes;
    const char* setting;
    Mark mark;
    const char* offers;
    std::uint8_t sent;
  } cases[]{
      {"io_port", "port", 0x07, "on=1 direction=1 mode=1", "direction", Mark::kNone, "Output",
       0x07},
      // Mode 9: the page goes on showing the one before, which an update stores.
      {"io_port", "port", 0xE5, "on=1", "mode", Mark::kHidden,
       "Direct Multiplexed CRT RWR GLCD 8-bit DACs Latched SPI Dot Matrix", 0x01},
      {"glcd", "display", 0x05, "", "resolution", Mark::kHidden, "192x64", 0x05},
      {"spi_dac", "channel", 0x27, "damping=3 bits=2", "damping", Mark::kCorrected, "HI MID LO OFF",
       0x23},
      {"spi_dac", "channel", 0xF1, "damping=1 bits=3", "bits", Mark::kNone, "10 16 24 32", 0xF1},
  };
  for (const auto& c : cases) {
    SCOPED_TRACE(std::string(c.page) + ' ' + std::to_string(c.held));
    Sheet sheet(*FindPortPage(c.page));
    Bytes bytes(sheet.Exchanges()[0].block->bytes);
    bytes[0] = c.held;
    sheet.Retrieved(0, bytes);
    EXPECT_EQ(CodesOf(sheet, c.table, 1), c.codes);
    const Cell cell = *sheet.Find(c.table, 1, c.setting);
    EXPECT_EQ(sheet.MarkOf(cell), c.mark);
    std::string offers;
    for (const auto& [text, code] : OffersOf(sheet.SettingOf(cell)))
      offers += (offers.empty() ? "" : " ") + text;
    EXPECT_EQ(offers, c.offers);
    EXPECT_EQ(sheet.Outgoing(0)[0], c.sent);
  }
}

}  // namespace quillon::testing
