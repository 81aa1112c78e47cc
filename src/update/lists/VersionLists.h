// SPDX-License-Identifier: MIT
#pragma once

#include <cstddef>
#include <cstdint>
#include <optional>
#include <string>
#include <string_view>
#include <variant>

#include "firmware/VersionWord.h"

// The lists of newest versions that the vendor publishes, as text in fields with "|" between them:
//
//   1|2|10|http://vendor/update               of the program: three decimal numbers and a page
//   0910|0283|http://a|0800|0120|http://b     of boards, or of nodes: groups of a product id, a
//                                             version word (hexadecimal, four digits), and a page
//
// White space around a field is no part of it, and a page's address ends where its line does.
//
// The lists come over an open line, so nothing here trusts them. A decimal field is read as strtol
// with 32 bits reads it: blanks, a sign, digits up to the first other character. Without digits it
// is 0, beyond 32 bits the outermost number. A hexadecimal field is read as "%04X": of its first
// four characters, a sign and "0x" among them, up to the first that does not belong to a number. A
// group whose product id or version has no digits matches no board. A field that is missing is
// empty.
namespace quillon {

// No more is read of a list than this many bytes, nor beyond a NUL.
inline constexpr std::size_t kProgramListBytes = 512;
inline constexpr std::size_t kGroupListBytes = 1024;  // of boards, and of nodes

// A program's version as version resources hold it: the major number above the minor one in `most`,
// the third above a fourth in `least`.
struct ProgramVersion {
  std::uint32_t most = 0;
  std::uint32_t least = 0;

  bool operator==(const ProgramVersion&) const = default;
};

// The version in a text "major.minor.third" of numbers up to 65535; nothing in any other text.
std::optional<ProgramVersion> ReadProgramVersion(std::string_view text);

struct NothingToShow {
  bool operator==(const NothingToShow&) const = default;
};

struct NoUpdates {
  bool operator==(const NoUpdates&) const = default;
};

struct UpdateOffer {
  std::string question;  // to the user
  std::string page;      // the address to visit on a yes, as the list has it; may be empty

  bool operator==(const UpdateOffer&) const = default;
};

using Comparison = std::variant<NothingToShow, NoUpdates, UpdateOffer>;

// Whether the program list has a newer version than the one installed. There is always something to
// show.
Comparison CompareProgram(std::string_view list, ProgramVersion installed);

// Whether the list of boards has newer firmware for the product. Nothing to show where the list
// does not have the product.
Comparison CompareFirmware(std::string_view list, std::uint16_t product_id, VersionWord installed);

// The newest firmware of the nodes of a product, from the list of nodes.
std::optional<VersionWord> ListedNodeVersion(std::string_view list, std::uint16_t product_id);

}  // namespace quillon
