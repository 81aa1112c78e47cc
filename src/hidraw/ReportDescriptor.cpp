// SPDX-License-Identifier: MIT
#include "hidraw/ReportDescriptor.h"

#include <optional>

namespace quillon {
namespace {

// Prefixes of items without their size bits (6.2.2.4, 6.2.2.7, 6.2.2.8).
enum Item : std::uint8_t {
  kInput = 0x80,
  kOutput = 0x90,
  kFeature = 0xB0,
  kCollection = 0xA0,
  kEndCollection = 0xC0,
  kUsagePage = 0x04,
  kUsage = 0x08,
  kPush = 0xA4,
  kPop = 0xB4,
};

constexpr std::uint8_t kLongItem = 0xFE;

}  // namespace

std::vector<CollectionUsage> TopLevelCollections(std::span<const std::uint8_t> descriptor) {
  std::vector<CollectionUsage> found;
  std::vector<std::uint16_t> pushed;
  std::uint16_t page = 0;
  std::optional<std::uint32_t> usage;  // the first one since the last main item
  bool usage_has_page = false;
  std::size_t depth = 0;
  while (!descriptor.empty()) {
    const std::uint8_t prefix = descriptor[0];
    if (prefix == kLongItem) {
      if (descriptor.size() < 3 || descriptor.size() < 3U + descriptor[1]) return found;
      descriptor = descriptor.subspan(3U + descriptor[1]);
      continue;
    }
    const std::size_t bytes = (prefix & 3U) == 3 ? 4 : prefix & 3U;
    if (descriptor.size() < 1 + bytes) return found;
    std::uint32_t value = 0;
    for (std::size_t i = 0; i < bytes; ++i) value |= std::uint32_t{descriptor[1 + i]} << (8 * i);
    descriptor = descriptor.subspan(1 + bytes);
    switch (prefix & 0xFCU) {
      case kUsagePage:
        page = static_cast<std::uint16_t>(value);
        break;
      case kPush:
        pushed.push_back(page);
        break;
      case kPop:
        if (pushed.empty()) return found;
        page = pushed.back();
        pushed.pop_back();
        break;
      case kUsage:
        if (usage) break;
        usage = value;
        usage_has_page = bytes == 4;  // in its upper half, whatever the page is by now
        break;
      case kCollection:
        if (depth++ == 0) {
          found.push_back({usage_has_page ? static_cast<std::uint16_t>(*usage >> 16U) : page,
                           static_cast<std::uint16_t>(usage.value_or(0))});
        }
        [[fallthrough]];
      case kInput:
      case kOutput:
      case kFeature:
        usage.reset();
        usage_has_page = false;
        break;
      case kEndCollection:
        if (depth == 0) return found;
        --depth;
        usage.reset();
        usage_has_page = false;
        break;
      default:
        break;
    }
  }
  return found;
}

}  // namespace quillon
