// SPDX-License-Identifier: MIT
#include "hidraw/ReportDescriptor.h"

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
  // The first one since the last main item. Where it has 4 bytes, the upper two are its page.
  std::uint32_t usage = 0;
  enum { kNone, kUsageAlone, kUsageWithPage } usage_is = kNone;
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
        if (usage_is != kNone) break;
        usage = value;
        usage_is = bytes == 4 ? kUsageWithPage : kUsageAlone;
        break;
      case kCollection:
        if (depth++ == 0) {
          const std::uint32_t own_page = usage_is == kUsageWithPage ? usage >> 16U : page;
          found.push_back({static_cast<std::uint16_t>(own_page),
                           static_cast<std::uint16_t>(usage_is == kNone ? 0 : usage)});
        }
        [[fallthrough]];
      case kInput:
      case kOutput:
      case kFeature:
        usage_is = kNone;
        break;
      case kEndCollection:
        if (depth == 0) return found;
        --depth;
        usage_is = kNone;
        break;
      default:
        break;
    }
  }
  return found;
}

}  // namespace quillon
