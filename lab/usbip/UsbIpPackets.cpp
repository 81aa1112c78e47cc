// SPDX-License-Identifier: MIT
#include "usbip/UsbIpPackets.h"

#include <algorithm>

namespace quillon::usbip {
namespace {

enum Command : std::uint32_t {
  kSubmit = 1,
  kUnlink = 2,
  kSubmitAnswer = 3,
  kUnlinkAnswer = 4,
};

constexpr std::size_t kNumberAt = 4, kDirectionAt = 12, kEndpointAt = 16;
constexpr std::size_t kLengthAt = 24, kPacketsAt = 32, kSetupAt = 40;
constexpr std::size_t kVictimAt = 20, kStatusAt = 20;

std::uint32_t WordAt(std::span<const std::uint8_t> bytes, std::size_t at) {
  std::uint32_t word = 0;
  for (const std::uint8_t byte : bytes.subspan(at, 4)) word = word << 8 | byte;
  return word;
}

void PutWord(std::span<std::uint8_t> bytes, std::size_t at, std::uint32_t word) {
  for (std::size_t i = 0; i < 4; ++i)
    bytes[at + i] = static_cast<std::uint8_t>(word >> (24 - 8 * i));
}

std::vector<std::uint8_t> Answer(Command command, std::uint32_t number, std::int32_t status) {
  std::vector<std::uint8_t> bytes(kHeaderBytes);
  PutWord(bytes, 0, command);
  PutWord(bytes, kNumberAt, number);
  PutWord(bytes, kStatusAt, static_cast<std::uint32_t>(status));
  return bytes;
}

// Packets are of isochronous transfers, which boards do not have; other transfers say 0 or -1.
bool MakesSense(const Submit& submit, std::uint32_t packets) {
  return submit.length <= kMostTransferBytes && (packets == 0 || packets == 0xFFFFFFFF);
}

}  // namespace

void RequestReader::Add(std::span<const std::uint8_t> bytes) {
  if (!broken_) bytes_.insert(bytes_.end(), bytes.begin(), bytes.end());
}

std::optional<HostRequest> RequestReader::Break() {
  broken_ = true;
  bytes_.clear();
  return std::nullopt;
}

std::optional<HostRequest> RequestReader::Next() {
  if (bytes_.size() < kHeaderBytes) return std::nullopt;
  const auto drop = [&](std::size_t count) {
    bytes_.erase(bytes_.begin(), bytes_.begin() + static_cast<std::ptrdiff_t>(count));
  };
  const std::uint32_t command = WordAt(bytes_, 0), number = WordAt(bytes_, kNumberAt);
  if (command == kUnlink) {
    const Unlink unlink{number, WordAt(bytes_, kVictimAt)};
    drop(kHeaderBytes);
    return unlink;
  }
  const std::uint32_t direction = WordAt(bytes_, kDirectionAt);
  if (command != kSubmit || direction > 1) return Break();
  Submit submit{.number = number,
                .endpoint = WordAt(bytes_, kEndpointAt),
                .in = direction == 1,
                .length = WordAt(bytes_, kLengthAt)};
  if (!MakesSense(submit, WordAt(bytes_, kPacketsAt))) return Break();
  const std::size_t total = kHeaderBytes + (submit.in ? 0 : submit.length);
  if (bytes_.size() < total) return std::nullopt;
  std::copy_n(bytes_.begin() + kSetupAt, submit.setup.size(), submit.setup.begin());
  submit.data.assign(bytes_.begin() + kHeaderBytes,
                     bytes_.begin() + static_cast<std::ptrdiff_t>(total));
  drop(total);
  return submit;
}

std::vector<std::uint8_t> InAnswer(std::uint32_t number, std::int32_t status,
                                   std::span<const std::uint8_t> data) {
  auto bytes = OutAnswer(number, status, static_cast<std::uint32_t>(data.size()));
  bytes.insert(bytes.end(), data.begin(), data.end());
  return bytes;
}

std::vector<std::uint8_t> OutAnswer(std::uint32_t number, std::int32_t status,
                                    std::uint32_t taken) {
  auto bytes = Answer(kSubmitAnswer, number, status);
  PutWord(bytes, kLengthAt, taken);
  return bytes;
}

std::vector<std::uint8_t> UnlinkAnswer(std::uint32_t number, std::int32_t status) {
  return Answer(kUnlinkAnswer, number, status);
}

}  // namespace quillon::usbip
