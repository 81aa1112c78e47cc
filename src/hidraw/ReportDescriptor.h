// SPDX-License-Identifier: MIT
#pragma once

#include <cstdint>
#include <span>
#include <vector>

namespace quillon {

// What a top-level collection is for (USB HID 1.11, 6.2.2.6 and 6.2.2.8; HID Usage Tables).
struct CollectionUsage {
  std::uint16_t page = 0;
  std::uint16_t usage = 0;

  bool operator==(const CollectionUsage&) const = default;
};

// The usages of a report descriptor's top-level collections, in order; {page, 0} for one that names
// none. Reads as far as the descriptor makes sense, so one that is cut or garbled may give fewer.
std::vector<CollectionUsage> TopLevelCollections(std::span<const std::uint8_t> descriptor);

}  // namespace quillon
