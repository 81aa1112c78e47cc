// SPDX-License-Identifier: MIT
#include "devlink/DeviceBroadcast.h"

#include <algorithm>

#include "kvusb/kvusb.h"

namespace quillon {
namespace {

constexpr std::size_t kSizeAt = 0;
constexpr std::size_t kTypeAt = 4;
constexpr std::size_t kHeaderSize = 12;
constexpr std::size_t kPathAt = 28;

std::uint32_t Number(std::span<const std::uint8_t> bytes, std::size_t at) {
  std::uint32_t number = 0;
  for (std::size_t i = 4; i > 0; --i) number = number << 8U | bytes[at + i - 1];
  return number;
}

std::string Path(std::span<const std::uint8_t> text) {
  const std::size_t width = text.size() > 1 && text[1] == 0 ? 2 : 1;
  std::string path;
  for (; text.size() >= width; text = text.subspan(width)) {
    const bool ascii = text[0] < 0x80 && (width == 1 || text[1] == 0);
    if (ascii && text[0] == 0) break;
    path += ascii ? static_cast<char>(text[0]) : '?';
  }
  return path;
}

}  // namespace

// The two highest of the 16 bits say what the parameter points to.
bool HasBroadcast(std::uint32_t event) { return (event & 0xFFFFC000U) == 0x8000U; }

std::optional<DeviceBroadcast> ReadDeviceBroadcast(std::uint32_t event,
                                                   std::span<const std::uint8_t> bytes) {
  if (bytes.size() < kHeaderSize) return std::nullopt;
  const std::size_t size = std::min<std::size_t>(Number(bytes, kSizeAt), bytes.size());
  if (size < kHeaderSize) return std::nullopt;
  DeviceBroadcast broadcast{event, Number(bytes, kTypeAt), {}};
  if (broadcast.device_type == KVUSB_DEVICE_INTERFACE && size > kPathAt) {
    broadcast.path = Path(bytes.subspan(kPathAt, size - kPathAt));
  }
  return broadcast;
}

}  // namespace quillon
