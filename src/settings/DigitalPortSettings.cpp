// SPDX-License-Identifier: MIT
#include "settings/DigitalPortSettings.h"

#include <array>

#include "settings/CommonSettings.h"
#include "settings/DigitalPortRules.h"

namespace quillon {
namespace {

using namespace common;

constexpr std::array<std::string_view, 1> kBoardName{"Board"};
constexpr std::array<Choice, 2> kMasterSwitches{
    {{.text = "None"}, {.text = "%1", .first = 1, .last = 256}}};

constexpr Setting MasterSwitch(Field field) {
  return {.id = "master_switch",
          .title = "Master Switch",
          .purpose = "The input that is the board's master switch.",
          .field = field,
          .choices = kMasterSwitches,
          .most = 256,
          .foreign = Foreign::kFactory,
          .factory = kOff};
}

constexpr Table BoardTable(std::span<const Setting> settings) {
  return {.id = "board",
          .names = {.pattern = "", .names = kBoardName},
          .bits_a_row = 16,
          .settings = settings};
}

// ---- Ports ----

// Intended: a port that the board holds as rotary is shown with a code of its own, and goes back
// with it unless its mode is chosen anew.
constexpr std::array<Choice, 4> kPortModes{
    {{.text = "Normal"},
     {.text = "Toggle", .first = 1},
     {.text = "Rotary", .first = kPortRotary},
     {.text = "Rotary", .first = kHeldPortRotary, .offered = false}}};
constexpr std::array<std::uint32_t, 3> kPortModesShown{0, 1, kHeldPortRotary};
constexpr std::array<Choice, 4> kPortDecodings{{{.text = "None"},
                                                {.text = "GRAY 1X", .first = 1},
                                                {.text = "GRAY 2X", .first = 2},
                                                {.text = "GRAY 4X", .first = 3}}};

constexpr std::array<Setting, 1> kPortsBoardSettings{MasterSwitch({0, 0, 16})};
constexpr std::array<Setting, 4> kPortSettings{
    {{.id = "on",
      .title = "ON",
      .purpose = "Switches the port on.",
      .field = {0, 0, 1},
      .factory = kOn},
     {.id = "invert",
      .title = "Invert",
      .purpose = "Reverses the port: open counts as pressed.",
      .field = {0, 1, 1},
      .factory = kOff},
     {.id = "mode",
      .title = "    Mode    ",
      .purpose = "What the board makes of the port. One port at most is Rotary.",
      .field = {0, 4, 4},
      .choices = kPortModes,
      .most = kHeldPortRotary,
      .factory = kOff,
      .shown = kPortModesShown},
     {.id = "encoder",
      .title = "            Rotary            ",
      .purpose = "How the board decodes a rotary encoder on the port.",
      .field = {1, 0, 4},
      .choices = kPortDecodings,
      .most = 3,
      .factory = kOff}}};
constexpr std::array<Table, 2> kPortsTables{{BoardTable(kPortsBoardSettings),
                                             {.id = "port",
                                              .names = {.pattern = "Port %1"},
                                              .first_bit = 16,
                                              .bits_a_row = 16,
                                              .rows = 8,
                                              .settings = kPortSettings}}};
constexpr std::array<Block, 1> kPortsBlocks{
    {{.id = "ports", .read = 0x17, .write = 0x18, .bytes = 18, .tables = kPortsTables}}};

// ---- Banks of inputs ----

constexpr std::array<Setting, 2> kBankBoardSettings{
    {MasterSwitch({0, 0, 12}),
     {.id = "bank",
      .title = "Bank",
      .purpose = "Bank 0 has the inputs 1 to 32, bank 1 those from 33 to 64, and so on.",
      .field = {1, 4, 4},
      .factory = kOff}}};
constexpr std::array<Setting, 4> kInputSettings{{InputOn({0, 0, 1}), InputInvert({0, 1, 1}),
                                                 InputMode({0, 4, 4}, "Mode", kInputModes),
                                                 PulseWidth({1, 0, 8})}};
constexpr std::array<Setting, 1> kLineASettings{Decoding({2, 0, 4}, "Rotary", kLineA)};
constexpr std::array<Setting, 1> kLineBSettings{Decoding({2, 0, 4}, "Rotary", kLineB)};

constexpr std::array<Table, 1> kBankTables{BoardTable(kBankBoardSettings)};
// Intended: before the first retrieve or defaults the last row has no name.
constexpr auto kInputTables = PairedInputs(0, kInputsOfBank, kInputSettings, kLineASettings,
                                           kLineBSettings, kInputsOfBank - 1);
constexpr std::array<Block, 2> kBankBlocks{{{.id = "bank",
                                             .read = 0x14,
                                             .write = 0x10,
                                             .bytes = 2,
                                             .tables = kBankTables,
                                             .write_checked = false},
                                            {.id = "inputs",
                                             .way = Way::kRange,
                                             .read = 0x12,
                                             .write = 0x0E,
                                             .start = 8,
                                             .end = 104,
                                             .bytes = 96,
                                             .tables = kInputTables}}};

static_assert(IsSound(kPortsBlocks[0]) && IsSound(kBankBlocks[0]) && IsSound(kBankBlocks[1]));

constexpr Page DigitalPorts(std::span<const Block> blocks, const Rules* rules) {
  return {.id = "ports",
          .title = "Digital Ports",
          .blocks = blocks,
          .rules = rules,
          .answered_is_done = true};
}
constexpr std::array kPortsPages{DigitalPorts(kPortsBlocks, &kDigitalPortRules)};
constexpr std::array kBankPages{DigitalPorts(kBankBlocks, &kInputBankRules)};

}  // namespace

std::span<const Page> DigitalPortPages() { return kPortsPages; }
std::span<const Page> InputBankPages() { return kBankPages; }

}  // namespace quillon
