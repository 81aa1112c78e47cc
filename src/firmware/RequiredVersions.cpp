// SPDX-License-Identifier: MIT
#include "firmware/RequiredVersions.h"

#include <algorithm>
#include <array>

namespace quillon {
namespace {

constexpr std::array<FirmwareRequirement, 16> kRequirements{{
    {0x0910, 0x0282, 0x0100, 0},
    {0x1000, 0x0282, 0x0100, 0},
    {0x0510, 0x0220, 0x0100, 0},
    {0x1100, 0x0220, 0x0100, 0},
    {0x0520, 0x0100, 0x0100, 0},
    {0x1110, 0x0100, 0x0100, 0},
    {0x0800, 0x0110, 0x0100, 0x0130},
    {0x1200, 0x0110, 0x0100, 0x0130},
    {0x0710, 0x0120, 0x0100, 0},
    {0x1300, 0x0120, 0x0100, 0},
    {0x0920, 0x0120, 0x0100, 0},
    {0x1010, 0x0120, 0x0100, 0},
    {0x1500, 0x0110, 0x0100, 0},
    {0x1400, 0x0110, 0x0100, 0},
    {0x1600, 0x0100, 0x0100, 0},
    {0x1700, 0x0100, 0x0100, 0},
}};

}  // namespace

std::span<const FirmwareRequirement> FirmwareRequirements() { return kRequirements; }

std::uint32_t LookupRequiredVersion(std::uint32_t product_id) {
  const auto* const row =
      std::find_if(kRequirements.begin(), kRequirements.end(),
                   [&](const auto& candidate) { return candidate.product_id == product_id; });
  return row == kRequirements.end() ? 0 : row->firmware;
}

}  // namespace quillon
