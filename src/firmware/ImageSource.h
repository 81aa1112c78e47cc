// SPDX-License-Identifier: MIT
#pragma once

#include <cstddef>
#include <cstdint>
#include <span>
#include <string>
#include <string_view>
#include <variant>
#include <vector>

#include "firmware/KvxImage.h"

// What KVX files are made from: the output of a linker, as Intel HEX or as plain bytes.
namespace quillon {

// Flash addresses have 16 bits.
inline constexpr std::size_t kFlashAddresses = 0x10000;

// Bytes of an image that follow each other without a gap.
struct FlashPiece {
  std::size_t address = 0;
  std::vector<std::uint8_t> bytes;

  bool operator==(const FlashPiece&) const = default;
};

// Pieces in ascending order, none touching the next, or a sentence on what is wrong and where.
using FlashPieces = std::variant<std::vector<FlashPiece>, std::string>;

// Strict: every line is a record with a right checksum, the last one is the end of the file, no
// byte is given twice, and none lies beyond the 16-bit addresses. Knows the record types 00 to 05;
// start addresses (03 and 05) have no place in a KVX file and are skipped. So are blanks at the end
// of a line, blank lines, and at the end of the file the ^Z that older tools put there.
FlashPieces ReadIntelHex(std::string_view text);

// Bytes that begin at address 0.
FlashPieces PiecesOfBinary(std::span<const std::uint8_t> bytes);

// The pieces as data records of at most `most_bytes` bytes, or a sentence when they are too many.
// `most_bytes` is 1 to 59.
std::variant<std::vector<KvxRecord>, std::string> SplitIntoRecords(
    std::span<const FlashPiece> pieces, std::size_t most_bytes = KvxRecord::kMostBytes);

}  // namespace quillon
