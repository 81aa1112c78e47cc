// SPDX-License-Identifier: MIT
#include <gmock/gmock.h>

#include "lab/sim/SimFixture.h"

namespace quillon::sim {
namespace {

using ::testing::ElementsAre;

std::string Device(const char* product) {
  return R"("firmware": "1.00", "product": ")" + std::string(product) + '"';
}

// `bytes` bytes that all differ from their neighbours, every bit of a byte used.
Bytes Pattern(std::size_t bytes) {
  Bytes pattern(bytes);
  for (std::size_t i = 0; i < bytes; ++i) pattern[i] = static_cast<std::uint8_t>(0xFF - 3 * i);
  return pattern;
}

struct WholeBlock {
  const char* product;
  const char* name;
  std::uint8_t read, write;
  std::size_t bytes;
};

constexpr WholeBlock kWhole[] = {
    {"0x0910", "analog_a", 0x11, 0x0D, 24},   {"0x1000", "analog_b", 0x15, 0x16, 21},
    {"0x0910", "axis_tweak", 0x22, 0x23, 32}, {"0x0910", "digital", 0x12, 0x0E, 48},
    {"0x0910", "hat", 0x13, 0x0F, 4},         {"0x0910", "expansion", 0x14, 0x10, 2},
    {"0x0920", "analog_a", 0x11, 0x0D, 24},   {"0x1010", "axis_tweak", 0x22, 0x23, 32},
    {"0x0920", "digital", 0x12, 0x0E, 49},    {"0x0920", "hat", 0x13, 0x0F, 4},
    {"0x1300", "expansion", 0x14, 0x10, 2},   {"0x0510", "ports", 0x17, 0x18, 18},
    {"0x1100", "ports", 0x17, 0x18, 18},      {"0x0520", "bank", 0x14, 0x10, 2},
    {"0x1400", "spi", 0x14, 0x10, 8},         {"0x1500", "spi", 0x14, 0x10, 8},
};

TEST(SimSettings, WholeBlocksAreKeptToTheLastBit) {
  for (const WholeBlock& block : kWhole) {
    SCOPED_TRACE(std::string(block.product) + " " + block.name);
    SimFixture fixture(Device(block.product));
    const Bytes data = Pattern(block.bytes);
    // Bytes 1 to 3 of a block without a range may hold anything.
    EXPECT_THAT(fixture.Ask(Joined({0, 7, 99, 3, block.write, 1}, data)), ElementsAre(block.write));
    EXPECT_TRUE(std::ranges::equal(fixture.TheBoard().Block(block.name), data));
    // The byte behind the block carries nothing.
    EXPECT_EQ(fixture.Ask({0, 1, 2, 3, block.read}, block.bytes + 2),
              Joined(Joined({block.read}, data), {kFiller}));
    EXPECT_THAT(fixture.Ask(Joined({0, 0, 0, 0, block.write, 0}, Bytes(block.bytes))),
                ElementsAre(kRefused))
        << "a write without argument 1";
    EXPECT_EQ(fixture.Ask({0, 0, 0, 0, block.read}, block.bytes + 1), Joined({block.read}, data));
  }
}

TEST(SimSettings, FactoryValuesHoldBitsThatNobodyEditsAndTheRigReplacesThem) {
  SimFixture fixture(kJoystickBoard + R"(, "blocks": {"hat": "0B 12 05 34"})");
  EXPECT_THAT(fixture.Ask({0, 0, 0, 0, 0x11}, 10),
              ElementsAre(0x11, 0x59, 0xAB, 0x01, 0x51, 0x5B, 0x02, 0x35, 0x0B, 0x04));
  EXPECT_THAT(fixture.Ask({0, 0, 0, 0, 0x13}, 5), ElementsAre(0x13, 0x0B, 0x12, 0x05, 0x34));
}

struct RangedBlock {
  const char* product;
  const char* name;
  std::uint8_t read, write, start, end;
};

constexpr RangedBlock kRanged[] = {
    {"0x0710", "inputs", 0x12, 0x0E, 8, 0x48},
    {"0x1300", "pairs", 0x17, 0x18, 0x48, 0xA8},
    {"0x0520", "inputs", 0x12, 0x0E, 8, 0x68},
    {"0x1110", "inputs", 0x12, 0x0E, 8, 0x68},
};

TEST(SimSettings, RangedBlocksTravelInChunks) {
  for (const RangedBlock& block : kRanged) {
    SCOPED_TRACE(std::string(block.product) + " " + block.name);
    SimFixture fixture(Device(block.product));
    const Bytes data = Pattern(static_cast<std::size_t>(block.end - block.start));
    const auto rest = static_cast<std::uint8_t>(data.size() - 59);
    const auto middle = static_cast<std::uint8_t>(block.start + 59);
    EXPECT_THAT(fixture.Ask(Joined({0, 59, block.start, middle, block.write, 1},
                                   Bytes(data.begin(), data.begin() + 59))),
                ElementsAre(block.write));
    EXPECT_THAT(fixture.Ask(Joined({0, rest, middle, block.end, block.write, 1},
                                   Bytes(data.begin() + 59, data.end()))),
                ElementsAre(block.write));
    // In one stretch of 63 bytes from the middle of the first chunk into the second.
    const auto from = static_cast<std::uint8_t>(block.start + 1);
    const auto to = static_cast<std::uint8_t>(from + 63);
    EXPECT_EQ(fixture.Ask({0, 63, from, to, block.read}, 64),
              Joined({block.read}, Bytes(data.begin() + 1, data.begin() + 64)));
    const auto last = static_cast<std::uint8_t>(block.end - 1);
    EXPECT_EQ(fixture.Ask({0, 1, last, block.end, block.read}, 3),
              (Bytes{block.read, data.back(), kFiller}));
  }
}

TEST(SimSettings, RangesOutsideTheBlockAreRefused) {
  SimFixture fixture(Device("0x0710"));
  const Bytes before(fixture.TheBoard().Block("inputs").begin(),
                     fixture.TheBoard().Block("inputs").end());
  const Bytes ranges[] = {
      {1, 7, 8},         // before the block
      {2, 0x47, 0x49},   // beyond its end
      {60, 0x48, 0x84},  // the other block
      {0, 8, 8},         // empty
      {0xC0, 0x48, 8},   // turned round
      {64, 8, 0x48},     // more than a packet carries
      {58, 8, 67},       // the length says otherwise
  };
  for (const Bytes& range : ranges) {
    SCOPED_TRACE(::testing::PrintToString(range));
    EXPECT_THAT(fixture.Ask({0, range[0], range[1], range[2], 0x12}), ElementsAre(kRefused));
    EXPECT_THAT(fixture.Ask(Joined({0, range[0], range[1], range[2], 0x0E, 1}, Bytes(59))),
                ElementsAre(kRefused));
  }
  EXPECT_THAT(fixture.Ask(Joined({0, 60, 8, 68, 0x0E, 1}, Bytes(59))), ElementsAre(kRefused))
      << "a write of 60 bytes does not fit a packet";
  EXPECT_TRUE(std::ranges::equal(fixture.TheBoard().Block("inputs"), before));
}

TEST(SimSettings, CommandsOfOtherFamiliesAndModesAreRefused) {
  const std::pair<std::string, Bytes> unknown[] = {
      {Device("0x0910"), {0x17, 0x18, 0x1C, 0x1D, 0x06, 0x99}},
      {Device("0x0920"), {0x15, 0x16, 0x14, 0x10, 0x17}},
      {Device("0x0710"), {0x11, 0x22, 0x13, 0x30, 0x31, 0x32, 0x33}},
      {Device("0x0510"), {0x11, 0x12, 0x0E, 0x14, 0x30}},
      {Device("0x0520"), {0x11, 0x17, 0x18, 0x30}},
      {Device("0x1500"), {0x11, 0x12, 0x1C, 0x1D, 0x30}},
      {Device("0x0800"), {0x11, 0x14, 0x10, 0x30}},
      {Device("0x1700"), {0x11, 0x14, 0x1D, 0x30}},
  };
  for (const auto& [board, commands] : unknown) {
    SimFixture fixture(board);
    for (const std::uint8_t command : commands)
      EXPECT_THAT(fixture.Ask({0, 0, 0, 0, command, 1}), ElementsAre(kRefused))
          << board << " " << int{command};
  }
  SimFixture loader(R"("product": "0x0910", "firmware": "2.82", "mode": "flash")");
  for (const std::uint8_t command : Bytes{0x11, 0x0D, 0x12, 0x30, 0x99})
    EXPECT_THAT(loader.Ask({0, 0, 0, 0, command, 1}), ElementsAre(kCommandFail)) << int{command};
}

}  // namespace
}  // namespace quillon::sim
