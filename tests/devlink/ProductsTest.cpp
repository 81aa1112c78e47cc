// SPDX-License-Identifier: MIT
#include <gmock/gmock.h>

#include <map>

#include "devlink/Products.h"

namespace quillon {
namespace {

TEST(Products, AreToldByTheirIdAlone) {
  using enum BoardFamily;
  struct Row {
    BoardFamily family;
    unsigned required;
    bool defaults_from_tree;
  };
  const std::map<unsigned, Row> rows{
      {0x0910, {kJoystick, 0x0282, true}},      {0x1000, {kJoystick, 0x0282, false}},
      {0x0920, {kSmallJoystick, 0x0120, true}}, {0x1010, {kSmallJoystick, 0x0120, false}},
      {0x0710, {kScanMatrix, 0x0120, true}},    {0x1300, {kScanMatrix, 0x0120, false}},
      {0x0510, {kDigitalPorts, 0x0220, true}},  {0x1100, {kDigitalPorts, 0x0220, false}},
      {0x0520, {kInputBanks, 0x0100, true}},    {0x1110, {kInputBanks, 0x0100, false}},
      {0x0800, {kNodeSystem, 0x0110, true}},    {0x1200, {kNodeSystem, 0x0110, false}},
      {0x1500, {kSpi, 0x0110, true}},           {0x1400, {kSpi, 0x0110, false}},
      {0x1600, {kWithoutPages, 0x0100, false}}, {0x1700, {kWithoutPages, 0x0100, false}},
  };
  // All other ids are nobody's.
  for (unsigned id = 0; id <= 0xFFFF; ++id) {
    const auto row = rows.find(id);
    const Row expected = row == rows.end() ? Row{kNone, 0, false} : row->second;
    const Product& product = ProductOf(static_cast<std::uint16_t>(id));
    ASSERT_EQ(product.family, expected.family) << std::hex << id;
    ASSERT_EQ(product.defaults_from_tree, expected.defaults_from_tree) << std::hex << id;
    ASSERT_EQ(product.nodes_in_tree, id == 0x0800) << std::hex << id;
    ASSERT_EQ(LookupRequiredVersion(id), expected.required) << std::hex << id;
  }
  EXPECT_EQ(LookupRequiredVersion(0x10910), 0U);
}

}  // namespace
}  // namespace quillon
