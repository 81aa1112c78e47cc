// SPDX-License-Identifier: MIT
#include "firmware/ImageSource.h"

#include <algorithm>
#include <array>
#include <cstdio>
#include <numeric>
#include <optional>
#include <utility>

namespace quillon {
namespace {

using Bytes = std::vector<std::uint8_t>;

constexpr std::uint8_t kData = 0, kEnd = 1, kSegment = 2, kStartSegment = 3, kLinear = 4,
                       kStartLinear = 5;
constexpr std::size_t kFrame = 5;       // length, two of address, type, checksum
constexpr std::size_t kDataBegins = 4;  // after length, address and type

std::string Hex(std::size_t value) {
  std::array<char, 20> text{};
  std::snprintf(text.data(), text.size(), "0x%04zX", value);
  return text.data();
}

std::optional<std::uint8_t> DigitOf(char c) {
  if (c >= '0' && c <= '9') return static_cast<std::uint8_t>(c - '0');
  if (c >= 'A' && c <= 'F') return static_cast<std::uint8_t>(c - 'A' + 10);
  if (c >= 'a' && c <= 'f') return static_cast<std::uint8_t>(c - 'a' + 10);
  return std::nullopt;
}

// The bytes after the colon of a line, or what is wrong with it.
std::variant<Bytes, std::string> BytesOfLine(std::string_view line) {
  if (line.empty() || line[0] != ':') return "does not begin with a colon.";
  line.remove_prefix(1);
  if (line.size() % 2 != 0) return "ends in the middle of a byte.";
  Bytes bytes;
  for (std::size_t i = 0; i < line.size(); i += 2) {
    const auto high = DigitOf(line[i]), low = DigitOf(line[i + 1]);
    if (!high || !low) return "holds something else than hexadecimal digits.";
    bytes.push_back(static_cast<std::uint8_t>(*high << 4 | *low));
  }
  if (bytes.size() < kFrame || bytes.size() != kFrame + bytes[0]) {
    return "is not as long as its first byte says.";
  }
  if (std::accumulate(bytes.begin(), bytes.end(), 0U) % 0x100 != 0) return "has a wrong checksum.";
  return bytes;
}

std::string_view WithoutTrailing(std::string_view text, std::string_view characters) {
  return text.substr(0, text.find_last_not_of(characters) + 1);
}

// Reads line by line into a map of the flash.
class HexReader {
 public:
  // What is wrong with the line, as the end of a sentence.
  std::optional<std::string> Take(std::string_view line) {
    if (ended_) return "follows the end record.";
    auto parsed = BytesOfLine(line);
    if (auto* wrong = std::get_if<std::string>(&parsed)) return std::move(*wrong);
    const auto& bytes = std::get<Bytes>(parsed);
    const auto data = std::span(bytes).subspan(kDataBegins, bytes[0]);
    const std::size_t address = std::size_t{bytes[1]} << 8 | bytes[2];
    switch (bytes[3]) {
      case kData:
        return Store(address, data);
      case kEnd:
        ended_ = true;
        return data.empty() ? std::nullopt : std::optional("is an end record with data.");
      case kSegment:
      case kLinear:
        return MoveBase(bytes[3], data);
      case kStartSegment:
      case kStartLinear:
        if (data.size() != 4) return "is a start record without four bytes.";
        return std::nullopt;
      default:
        return "is of the unknown type " + std::to_string(bytes[3]) + ".";
    }
  }

  bool HasEnded() const { return ended_; }

  std::vector<FlashPiece> Pieces() const {
    std::vector<FlashPiece> pieces;
    for (std::size_t at = 0; at < flash_.size(); ++at) {
      const std::optional<std::uint8_t>& byte = flash_[at];
      if (!byte) continue;
      if (at == 0 || !flash_[at - 1]) pieces.push_back({at, {}});
      pieces.back().bytes.push_back(*byte);
    }
    return pieces;
  }

 private:
  std::optional<std::string> Store(std::size_t address, std::span<const std::uint8_t> data) {
    for (std::size_t i = 0; i < data.size(); ++i) {
      // Within a segment addresses wrap around; elsewhere they go on.
      const std::size_t offset = segmented_ ? (address + i) % kFlashAddresses : address + i;
      const std::size_t at = base_ + offset;
      if (at >= kFlashAddresses) {
        return "has data at " + Hex(at) + ", but the addresses of a KVX file end at 0xFFFF.";
      }
      if (flash_[at]) return "gives the byte at " + Hex(at) + " a second time.";
      flash_[at] = data[i];
    }
    return std::nullopt;
  }

  std::optional<std::string> MoveBase(std::uint8_t type, std::span<const std::uint8_t> data) {
    if (data.size() != 2) return "is an address record without two bytes.";
    const std::size_t word = std::size_t{data[0]} << 8 | data[1];
    segmented_ = type == kSegment;
    base_ = segmented_ ? word << 4 : word << 16;
    if (base_ >= kFlashAddresses) {
      return "moves to the addresses from " + Hex(base_) +
             " on, but those of a KVX file end at 0xFFFF.";
    }
    return std::nullopt;
  }

  std::vector<std::optional<std::uint8_t>> flash_ =
      std::vector<std::optional<std::uint8_t>>(kFlashAddresses);
  std::size_t base_ = 0;
  bool segmented_ = false;
  bool ended_ = false;
};

}  // namespace

FlashPieces ReadIntelHex(std::string_view text) {
  HexReader reader;
  text = WithoutTrailing(text, " \t\r\n\x1A");
  for (int number = 1; !text.empty(); ++number) {
    const std::size_t end = text.find('\n');
    const std::string_view line = WithoutTrailing(text.substr(0, end), " \t\r");
    text.remove_prefix(end == std::string_view::npos ? text.size() : end + 1);
    if (line.empty()) continue;
    if (const auto wrong = reader.Take(line)) {
      return "Line " + std::to_string(number) + " " + *wrong;
    }
  }
  if (!reader.HasEnded()) return "The end record is missing; the file may have been cut.";
  return reader.Pieces();
}

FlashPieces PiecesOfBinary(std::span<const std::uint8_t> bytes) {
  if (bytes.size() > kFlashAddresses) {
    return "There are more than " + std::to_string(kFlashAddresses) +
           " bytes, but the addresses of a KVX file end at 0xFFFF.";
  }
  if (bytes.empty()) return std::vector<FlashPiece>();
  return std::vector<FlashPiece>{{0, Bytes(bytes.begin(), bytes.end())}};
}

std::variant<std::vector<KvxRecord>, std::string> SplitIntoRecords(
    std::span<const FlashPiece> pieces, std::size_t most_bytes) {
  std::vector<KvxRecord> records;
  for (const FlashPiece& piece : pieces) {
    for (std::size_t done = 0; done < piece.bytes.size(); done += most_bytes) {
      const auto data = std::span(piece.bytes).subspan(done);
      const std::size_t length = std::min(data.size(), most_bytes);
      const std::size_t address = piece.address + done;
      KvxRecord record{.length = static_cast<std::uint8_t>(length),
                       .address_low = static_cast<std::uint8_t>(address & 0xFF),
                       .address_high = static_cast<std::uint8_t>(address >> 8 & 0xFF)};
      std::ranges::copy(data.first(length), record.data.begin());
      records.push_back(record);
    }
  }
  if (records.size() > KvxImage::kMostRecords) {
    return "It takes " + std::to_string(records.size()) + " records; a KVX file has at most " +
           std::to_string(KvxImage::kMostRecords) + ".";
  }
  return records;
}

}  // namespace quillon
