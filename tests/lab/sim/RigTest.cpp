// SPDX-License-Identifier: MIT
#include <gmock/gmock.h>

#include <algorithm>
#include <set>
#include <tuple>

#include "boards/Rig.h"

namespace quillon::sim {
namespace {

using ::testing::HasSubstr;

TEST(SimRig, TheDefaultRigShowsWhatCanDiffer) {
  const Rig rig = DefaultRig();
  ASSERT_FALSE(rig.boards.empty());
  EXPECT_EQ(rig.boards.front().product, 0x0910);
  EXPECT_EQ(rig.boards.front().serial, "001");
  std::set<std::tuple<std::uint16_t, std::string>> told_apart;
  std::set<std::uint16_t> in_device_mode;
  std::set<std::tuple<std::uint16_t, std::uint16_t, bool>> kinds;
  for (const BoardSpec& board : rig.boards) {
    EXPECT_THAT(board.product_text, HasSubstr("(simulated)"));
    EXPECT_TRUE(told_apart.emplace(board.product, board.serial).second) << board.id;
    if (!board.flash_mode) in_device_mode.insert(board.product);
    kinds.emplace(board.product, board.firmware, board.flash_mode);
    const bool answers_in_device_mode =
        board.product == 0x0800 || board.product == 0x1200 || board.product == 0x1500;
    EXPECT_TRUE(!answers_in_device_mode || board.queried.value_or(board.firmware) != board.firmware)
        << board.id;
    EXPECT_TRUE(!board.flash_mode || board.loader != board.firmware) << board.id;
  }
  for (const int product : {0x0910, 0x0920, 0x0710, 0x0510, 0x0520, 0x0800, 0x1500, 0x1000})
    EXPECT_TRUE(in_device_mode.contains(static_cast<std::uint16_t>(product))) << product;
  EXPECT_TRUE(kinds.contains({0x0920, 0x0110, false})) << "too old";
  EXPECT_TRUE(kinds.contains({0x0510, 0x0230, false})) << "too new";
  EXPECT_TRUE(kinds.contains({0x0910, 0x0271, true})) << "an older image in Flash Mode";
}

TEST(SimRig, TheFirstNodeBoardShowsEveryModeAndClosesNoPorts) {
  const Rig rig = DefaultRig();
  std::set<unsigned> ports;
  for (const auto& node : std::ranges::find(rig.boards, 0x0800, &BoardSpec::product)->nodes) {
    if (!node) continue;
    EXPECT_EQ(node->flash_version >> 4, 0x13) << "an old node would close the page";
    ports.insert({node->memory[6], node->memory[8]});
  }
  for (unsigned mode = 0; mode < 8; ++mode) EXPECT_TRUE(ports.contains(mode << 2 | 1)) << mode;
  for (const unsigned word : {0x00U, 0x02U, 0x03U}) EXPECT_TRUE(ports.contains(word)) << word;
}

TEST(SimRig, BrokenRigsAreToldWithThePlace) {
  const std::string front = R"({"boards": [{"id": "x", "product": "0x0910", "firmware": "2.82")";
  const std::string nodes = R"({"boards": [{"id": "x", "product": "0x0800", "firmware": "1.10",
      "nodes": [{"node": 5, "flash": "none", )";
  std::string crowd = R"({"boards": [0)";
  for (int more = 0; more < 256; ++more) crowd += ", 0";
  const std::pair<std::string, const char*> broken[] = {
      {crowd + "]}", "The rig lists 257 boards; a bus holds 256 at most."},
      {"", "no valid JSON"},
      {R"({"boards": [)", "line 1, column"},
      {R"({"boards": [{"id": )" + std::string(200'000, '[') + std::string(200'000, ']') + "}]}",
       "nested too deeply"},
      {R"([])", "The rig must be an object"},
      {R"({})", "The rig lacks \"boards\""},
      {R"({"boards": 3})", "must be a list"},
      {R"({"boards": [7]})", "Board 1 must be an object"},
      {R"({"boards": [{}]})", "Board 1 lacks \"id\""},
      {R"({"boards": [{"id": "../up"}]})", "\"id\" must be 1 to 26 of"},
      {R"({"boards": [{"id": "x"}]})", "Board 1 (x) lacks \"product\""},
      {R"({"boards": [{"id": "x", "product": 2320}]})", "like \"0x0910\""},
      {R"({"boards": [{"id": "x", "product": "0x10910"}]})", "like \"0x0910\""},
      {R"({"boards": [{"id": "x", "product": "0x0910"}]})", "lacks \"firmware\""},
      {R"({"boards": [{"id": "x", "product": "0x0910", "firmware": "2.8"}]})", "like \"2.82\""},
      {R"({"boards": [{"id": "x", "product": "0x0910", "firmware": "none"}]})",
       "must be \"flash\""},
      {front + R"(, "mode": "fash"}]})", "\"mode\" must be \"device\" or \"flash\", not \"fash\""},
      {front + R"(, "serial": "12"}]})", "three digits"},
      {front + R"(, "colour": 1}]})", "unknown key \"colour\""},
      {front + R"(, "reboot_ms": -1}]})", "\"reboot_ms\" must be a number from 0"},
      {front + R"(, "nodes": []}]})", "is no node board"},
      {front + R"(, "blocks": {"hat": "00"}}]})", "\"hat\" must be 4 bytes"},
      {front + R"(, "blocks": {"spi": "00"}}]})", "unknown key \"spi\""},
      {front + R"(, "serial_hex": "0"}]})", "\"serial_hex\" must be at most 20 bytes"},
      {front + R"(, "faults": [{"kind": "boom"}]}]})", "A fault of Board 1 (x): \"kind\""},
      {front + R"(, "faults": [{"kind": "stall", "nth": 0}]}]})",
       "\"nth\" must be a number from 1"},
      {front + R"(}, {"id": "x", "product": "0x0910", "firmware": "2.82"}]})", "Two boards have"},
      {R"({"boards": [{"id": "x", "product": "0x0800", "firmware": "1.10",
           "nodes": [{"node": 13, "flash": "none"}]}]})",
       "A node of Board 1 (x): \"node\""},
      {nodes + R"("blocks": {"ports": "00"}}]}]})", "\"ports\" must be 4 bytes"},
      {nodes + R"("blocks": {"hat": "00"}}]}]})", "unknown key \"hat\""},
      {nodes + R"("loader": "1.00"}], "cards": [{"card": 2}]}]})", "\"card\" must be one with"},
      {nodes + R"("loader": "1.00"}], "cards": [{"card": 1}, {"card": 1}]}]})", "another number"},
      {nodes + R"("loader": "1.00"}], "cards": [{"card": 1, "moves": [0]}]}]})",
       "A card of Board 1 (x): \"moves\" must be a list of numbers from 1"},
  };
  for (const auto& [text, sentence] : broken) {
    const auto rig = ParseRig(text);
    ASSERT_TRUE(std::holds_alternative<std::string>(rig)) << text.substr(0, 200);
    EXPECT_THAT(std::get<std::string>(rig), HasSubstr(sentence)) << text.substr(0, 200);
  }
}

}  // namespace
}  // namespace quillon::sim
