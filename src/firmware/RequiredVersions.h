// SPDX-License-Identifier: MIT
#pragma once

#include <cstdint>
#include <span>

namespace quillon {

// The firmware that this version of the program configures, for each product.
struct FirmwareRequirement {
  std::uint32_t product_id;
  std::uint32_t firmware;
  std::uint32_t loader;
  std::uint32_t node_firmware;  // 0 where the product has no nodes
};

std::span<const FirmwareRequirement> FirmwareRequirements();

// The required application firmware, or 0 for a product that is not in the table.
std::uint32_t LookupRequiredVersion(std::uint32_t product_id);

}  // namespace quillon
