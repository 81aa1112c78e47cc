// SPDX-License-Identifier: MIT
#include "settings/NodeSettings.h"

#include <algorithm>
#include <array>

#include "settings/NodeBlocks.h"

namespace quillon {
namespace {

constexpr std::array kOff{0U};
constexpr std::array kOn{1U};

// ---- I/O Ports, I/O Port ----

constexpr std::array<std::string_view, 24> kPortNames{
    "Port A", "Port B", "Port C", "Port D", "Port E", "Port F", "Port G", "Port H",
    "Port I", "Port J", "Port K", "Port L", "Port M", "Port N", "Port O", "Port P",
    "Port Q", "Port R", "Port S", "Port T", "Port U", "Port V", "Port W", "Port X"};

// Intended: a board may hold an input, which is shown and stored again, but nobody can choose one.
constexpr std::array<Choice, 2> kDirections{
    {{.text = "Output"}, {.text = "Input", .first = 1, .offered = false}}};
constexpr std::array<Choice, 8> kOutputModes{{{.text = "Direct"},
                                              {.text = "Multiplexed", .first = 1},
                                              {.text = "CRT RWR", .first = 2},
                                              {.text = "GLCD", .first = 3},
                                              {.text = "8-bit DACs", .first = 4},
                                              {.text = "Latched", .first = 5},
                                              {.text = "SPI", .first = 6},
                                              {.text = "Dot Matrix", .first = 7}}};
constexpr std::array<Setting, 3> kPortSettings{{{.id = "on",
                                                 .title = "ON",
                                                 .purpose = "Switches the port on.",
                                                 .field = port_word::kOn,
                                                 .factory = kOff},
                                                {.id = "direction",
                                                 .title = " I/O Mode ",
                                                 .purpose = "Which way the port works.",
                                                 .field = port_word::kInput,
                                                 .choices = kDirections,
                                                 .factory = kOff},
                                                {.id = "mode",
                                                 .title = "   Output Mode   ",
                                                 .purpose = "What the port drives.",
                                                 .field = port_word::kMode,
                                                 .choices = kOutputModes,
                                                 .most = 7,
                                                 .factory = kOff}}};
constexpr std::array kPortZeros{port_word::kUnused};
constexpr std::array<Table, 1> kPortTables{
    {{.id = "port",
      .names = {.pattern = "", .names = kPortNames, .by_port = true},
      .bits_a_row = 16,
      .settings = kPortSettings,
      .zeros = kPortZeros}}};

constexpr std::array<Block, 1> kPortBlocks{{{.id = "port",
                                             .way = Way::kNode,
                                             .read = port_word::kRead,
                                             .write = port_word::kWrite,
                                             .start = port_word::kFirst,
                                             .end = port_word::kSecond,
                                             .bytes = port_word::kBytes,
                                             .tables = kPortTables}}};

// ---- Direct Output Mode ----

constexpr std::array<Setting, 1> kOutputSettings{{{.id = "on",
                                                   .title = "ON",
                                                   .purpose = "Switches the output line on.",
                                                   .field = outputs::kOn,
                                                   .factory = kOn}}};
constexpr std::array kOutputZeros{outputs::kUnused};
constexpr std::array<Table, 1> kOutputTables{{{.id = "output",
                                               .names = {.pattern = "Output %1"},
                                               .bits_a_row = 8,
                                               .rows = outputs::kBytes,
                                               .settings = kOutputSettings,
                                               .zeros = kOutputZeros}}};
constexpr std::array<Block, 1> kOutputBlocks{{{.id = "outputs",
                                               .way = Way::kNode,
                                               .read = outputs::kRead,
                                               .write = outputs::kWrite,
                                               .start = outputs::kFirst,
                                               .end = outputs::kSecond,
                                               .bytes = outputs::kBytes,
                                               .tables = kOutputTables}}};

// ---- GLCD Mode ----

constexpr std::array<Choice, 1> kResolutions{{{.text = "192x64"}}};
constexpr std::array<Setting, 1> kDisplaySettings{
    {{.id = "resolution",
      .title = "GLCD Resolution:",
      .purpose = "The size of the graphic display at the port, in pixels.",
      .field = display::kResolution,
      .choices = kResolutions,
      .most = 0,
      .foreign = Foreign::kKept,
      .factory = kOff}}};
constexpr std::array<std::string_view, 1> kDisplayName{"Display"};
constexpr std::array<Table, 1> kDisplayTables{{{.id = "display",
                                                .names = {.pattern = "", .names = kDisplayName},
                                                .bits_a_row = 8,
                                                .settings = kDisplaySettings}}};
constexpr std::array<Block, 1> kDisplayBlocks{{{.id = "display",
                                                .way = Way::kNode,
                                                .read = display::kRead,
                                                .write = display::kWrite,
                                                .start = display::kFirst,
                                                .end = display::kSecond,
                                                .bytes = display::kBytes,
                                                .tables = kDisplayTables}}};

// ---- SPI / DAC Mode ----

constexpr std::array<Choice, 4> kDampings{{{.text = "HI", .first = 3},
                                           {.text = "MID", .first = 2},
                                           {.text = "LO", .first = 1},
                                           {.text = "OFF", .first = 0}}};
constexpr std::array<Choice, 4> kChannelBits{{{.text = "10"},
                                              {.text = "16", .first = 1},
                                              {.text = "24", .first = 2},
                                              {.text = "32", .first = 3}}};
constexpr std::array<Setting, 2> kDacSettings{
    {{.id = "damping",
      .title = " Damping ",
      .purpose = "How strongly the channel is damped.",
      .field = dac::kDamping,
      .choices = kDampings,
      .most = 3,
      .foreign = Foreign::kClamped,
      .factory = kOff},
     {.id = "bits",
      .title = " Channel Bits ",
      .purpose = "How many bits are sent for a value of the channel.",
      .field = dac::kBits,
      .choices = kChannelBits,
      .factory = kOff}}};
constexpr std::array<Table, 1> kDacTables{{{.id = "channel",
                                            .names = {.pattern = "CH %1"},
                                            .bits_a_row = 8,
                                            .rows = dac::kBytes,
                                            .settings = kDacSettings}}};
constexpr std::array<Block, 1> kDacBlocks{{{.id = "dacs",
                                            .way = Way::kNode,
                                            .read = dac::kRead,
                                            .write = dac::kWrite,
                                            .start = dac::kFirst,
                                            .end = dac::kSecond,
                                            .bytes = dac::kBytes,
                                            .tables = kDacTables}}};

static_assert(IsSound(kPortBlocks[0]) && IsSound(kOutputBlocks[0]) && IsSound(kDisplayBlocks[0]) &&
              IsSound(kDacBlocks[0]));

// ---- The pages ----

constexpr std::array<Page, 1> kNodeSystemPages{
    {{.id = "io_ports", .title = "I/O Ports", .blocks = kPortBlocks, .about = About::kAllPorts}}};

constexpr Page ModePage(std::string_view id, std::string_view title,
                        std::span<const Block> blocks) {
  return {
      .id = id, .title = title, .blocks = blocks, .about = About::kPort, .answered_is_done = true};
}
constexpr std::array<Page, 4> kPortPages{
    {{.id = "io_port", .title = "I/O Port", .blocks = kPortBlocks, .about = About::kPort},
     ModePage("direct_outputs", "Direct Output Mode", kOutputBlocks),
     ModePage("glcd", "GLCD Mode", kDisplayBlocks),
     ModePage("spi_dac", "SPI / DAC Mode", kDacBlocks)}};

}  // namespace

std::span<const Page> NodeSystemPages() { return kNodeSystemPages; }
std::span<const Page> PortPages() { return kPortPages; }

const Page* FindPortPage(std::string_view id) {
  const auto found = std::ranges::find(kPortPages, id, &Page::id);
  return found == kPortPages.end() ? nullptr : &*found;
}

}  // namespace quillon
