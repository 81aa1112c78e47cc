// SPDX-License-Identifier: MIT
#include "settings/SpiSettings.h"

#include <array>

#include "settings/CommonSettings.h"

namespace quillon {
namespace {

using namespace common;

constexpr std::array<Choice, 2> kModes{
    {{.text = "CS Line HIGH", .first = 1}, {.text = "CS Line LOW", .first = 0}}};
constexpr std::array<Setting, 2> kChannelSettings{
    {{.id = "damping",
      .title = " Damping ",
      .purpose = "How strongly the channel is damped.",
      .field = {0, 0, 4},
      .choices = kDampings,
      .most = 3,
      .foreign = Foreign::kClamped,
      .factory = kMid},
     {.id = "spi_mode",
      .title = " SPI Mode ",
      .purpose = "The level of the channel's chip-select line.",
      .field = {0, 4, 1},
      .choices = kModes,
      .factory = kOn}}};
constexpr std::array<Table, 1> kTables{{{.id = "channel",
                                         .names = {.pattern = "CH %1"},
                                         .bits_a_row = 8,
                                         .rows = 8,
                                         .settings = kChannelSettings}}};
constexpr std::array<Block, 1> kBlocks{
    {{.id = "spi", .read = 0x14, .write = 0x10, .bytes = 8, .tables = kTables}}};
static_assert(IsSound(kBlocks[0]));

// Intended: once lit, the Error lamp stays lit through a good update.
constexpr std::array<Page, 1> kPages{{{.id = "spi",
                                       .title = "SPI Configuration",
                                       .blocks = kBlocks,
                                       .answered_is_done = true,
                                       .update_leaves_lamp = true}}};

}  // namespace

std::span<const Page> SpiPages() { return kPages; }

}  // namespace quillon
