// SPDX-License-Identifier: MIT
#include "boards/Loader.h"

#include <algorithm>

namespace quillon::sim {
namespace {

constexpr std::uint8_t kRecord = 0, kFinish = 1, kErase = 8;
constexpr std::size_t kMostRecordBytes = 59;

}  // namespace

void FlashImage::Store(std::size_t address, std::span<const std::uint8_t> data) {
  if (bytes.size() < address + data.size()) bytes.resize(address + data.size(), 0xFF);
  std::ranges::copy(data, bytes.begin() + static_cast<std::ptrdiff_t>(address));
}

std::uint16_t FlashImage::Version() const {
  if (bytes.size() < 2) return 0;
  const auto word = static_cast<std::uint16_t>(bytes[0] << 8 | bytes[1]);
  return word == 0xFFFF ? std::uint16_t{0} : word;
}

FlashImage FlashImage::Of(std::uint16_t version) {
  FlashImage image;
  image.bytes = {static_cast<std::uint8_t>(version >> 8),
                 static_cast<std::uint8_t>(version & 0xFF)};
  for (std::uint8_t i = 0; i < 62; ++i) image.bytes.push_back(static_cast<std::uint8_t>(i * 7));
  image.valid = true;
  return image;
}

Reply Loader::StoreRecord(FlashImage& flash, Request request) const {
  const std::size_t length = request[kLengthAt];
  const std::size_t address = request[kStartAt] | std::size_t{request[kEndAt]} << 8;
  if (!erased_ || length > kMostRecordBytes) return Plain(kCommandFail);
  if (address + length > flash_bytes_) return Plain(kFlashFail);
  flash.Store(address, request.subspan(kPayloadAt, length));
  return Plain(kRecord);
}

Reply Loader::Finish(FlashImage& flash) {
  if (!erased_) return Plain(kCommandFail);
  erased_ = false;
  flash.valid = flash.Version() != 0;
  Reply reply = Plain(flash.valid ? std::uint8_t{kFinish} : std::uint8_t{kConfigFail});
  reply.changed = true;
  return reply;
}

std::optional<Reply> Loader::Handle(FlashImage& flash, Request request) {
  switch (request[kCommandAt]) {
    case kRecord:
      return StoreRecord(flash, request);
    case kFinish:
      return Finish(flash);
    case kErase: {
      flash = {};
      erased_ = true;
      Reply reply = Plain(kErase);
      reply.changed = true;
      reply.busy = erase_time_;
      return reply;
    }
    default:
      return std::nullopt;
  }
}

}  // namespace quillon::sim
