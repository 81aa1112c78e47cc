// SPDX-License-Identifier: MIT
#include "devlink/Products.h"

#include <algorithm>
#include <array>

#include "kvusb/kvusb.h"

namespace quillon {
namespace {

using enum BoardFamily;

constexpr std::uint32_t kFirst = KVUSB_TYPE_FIRMWARE;
constexpr std::uint32_t kSecond = KVUSB_TYPE_FIRMWARE_ID;

// The nodes' firmware is updated through a board whose own loader runs, so two tabs of the node I/O
// system are for Flash Mode.
//
// clang-format off
constexpr std::array<Product, 16> kProducts{{
    // id    family          application, loader, node  device   restarts tabs in   in Flash  defaults  lists
    //                       firmware                   mode     alike    its mode  Mode      from tree nodes
    {0x0910, kJoystick,      {0x0282, 0x0100, 0},      kFirst,  false,   {1, 5},   {},       true,     false},
    {0x1000, kJoystick,      {0x0282, 0x0100, 0},      kFirst,  false,   {1, 5},   {},       false,    false},
    {0x0510, kDigitalPorts,  {0x0220, 0x0100, 0},      kFirst,  false,   {1, 1},   {},       true,     false},
    {0x1100, kDigitalPorts,  {0x0220, 0x0100, 0},      kFirst,  false,   {1, 1},   {},       false,    false},
    {0x0520, kInputBanks,    {0x0100, 0x0100, 0},      kFirst,  false,   {1, 1},   {},       true,     false},
    {0x1110, kInputBanks,    {0x0100, 0x0100, 0},      kFirst,  false,   {1, 1},   {},       false,    false},
    {0x0800, kNodeSystem,    {0x0110, 0x0100, 0x0130}, kSecond, true,    {3, 3},   {1, 2},   true,     true},
    {0x1200, kNodeSystem,    {0x0110, 0x0100, 0x0130}, kSecond, true,    {3, 3},   {1, 2},   false,    false},
    {0x0710, kScanMatrix,    {0x0120, 0x0100, 0},      kFirst,  false,   {1, 2},   {},       true,     false},
    {0x1300, kScanMatrix,    {0x0120, 0x0100, 0},      kFirst,  false,   {1, 2},   {},       false,    false},
    {0x0920, kSmallJoystick, {0x0120, 0x0100, 0},      kFirst,  false,   {1, 4},   {},       true,     false},
    {0x1010, kSmallJoystick, {0x0120, 0x0100, 0},      kFirst,  false,   {1, 4},   {},       false,    false},
    {0x1500, kSpi,           {0x0110, 0x0100, 0},      kSecond, false,   {1, 1},   {},       true,     false},
    {0x1400, kSpi,           {0x0110, 0x0100, 0},      kSecond, false,   {1, 1},   {},       false,    false},
    {0x1600, kWithoutPages,  {0x0100, 0x0100, 0},      kFirst,  false,   {},       {},       false,    false},
    {0x1700, kWithoutPages,  {0x0100, 0x0100, 0},      kFirst,  false,   {},       {},       false,    false},
}};
// clang-format on

constexpr Product kUnknown{.device_mode = kFirst};

}  // namespace

std::span<const Product> Products() { return kProducts; }

const Product& ProductOf(std::uint16_t product_id) {
  const auto* const row = std::ranges::find(kProducts, product_id, &Product::id);
  return row == kProducts.end() ? kUnknown : *row;
}

const Product& AnyProductOf(BoardFamily family) {
  const auto* const row = std::ranges::find(kProducts, family, &Product::family);
  return row == kProducts.end() ? kUnknown : *row;
}

BoardFamily FamilyOf(std::uint16_t product_id) { return ProductOf(product_id).family; }

std::uint32_t LookupRequiredVersion(std::uint32_t product_id) {
  if (product_id > 0xFFFF) return 0;
  return ProductOf(static_cast<std::uint16_t>(product_id)).required.application;
}

}  // namespace quillon
