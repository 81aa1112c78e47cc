// SPDX-License-Identifier: MIT
#include "update/lists/VersionLists.h"

#include <algorithm>
#include <array>
#include <charconv>
#include <cstdio>
#include <cstdlib>
#include <limits>
#include <system_error>
#include <vector>

namespace quillon {
namespace {

using Fields = std::vector<std::string>;

constexpr std::string_view kWhiteSpace = " \t\n\v\f\r";

std::string_view Trimmed(std::string_view text) {
  text.remove_prefix(std::min(text.find_first_not_of(kWhiteSpace), text.size()));
  return text.substr(0, text.find_last_not_of(kWhiteSpace) + 1);
}

Fields FieldsOf(std::string_view list, std::size_t most_bytes) {
  list = list.substr(0, most_bytes);
  list = list.substr(0, list.find('\0'));
  Fields fields;
  for (std::size_t begin = 0; begin <= list.size();) {
    const std::size_t end = std::min(list.find('|', begin), list.size());
    fields.emplace_back(Trimmed(list.substr(begin, end - begin)));
    begin = end + 1;
  }
  return fields;
}

std::string FieldAt(const Fields& fields, std::size_t index) {
  return index < fields.size() ? fields[index] : std::string();
}

std::int32_t ReadDecimal(const std::string& field) {
  using Limits = std::numeric_limits<std::int32_t>;
  const long number = std::strtol(field.c_str(), nullptr, 10);
  return static_cast<std::int32_t>(std::clamp<long>(number, Limits::min(), Limits::max()));
}

std::optional<std::uint16_t> ReadHexadecimal(const std::string& field) {
  const std::string digits = field.substr(0, 4);
  char* end = nullptr;
  const unsigned long number = std::strtoul(digits.c_str(), &end, 16);
  if (end == digits.c_str()) return std::nullopt;
  return static_cast<std::uint16_t>(number & 0xFFFF);
}

std::string PageOf(const std::string& field) {
  return std::string(Trimmed(std::string_view(field).substr(0, field.find_first_of("\r\n"))));
}

// Hexadecimal on purpose, also for a program's decimal numbers: 1.2.10 is offered as 1.2a.
UpdateOffer OfferOf(std::int32_t major, std::int32_t minor, std::int32_t third,
                    const std::string& page) {
  std::array<char, 128> question{};
  std::snprintf(question.data(), question.size(),
                "New version %d.%x%x is available online. Visit online update page?", major,
                static_cast<unsigned>(minor), static_cast<unsigned>(third));
  return {question.data(), PageOf(page)};
}

struct Group {
  VersionWord version = 0;
  std::string page;
};

// The first group of the product.
std::optional<Group> GroupOf(std::string_view list, std::uint16_t product_id) {
  const Fields fields = FieldsOf(list, kGroupListBytes);
  for (std::size_t i = 0; i < fields.size(); i += 3) {
    const auto id = ReadHexadecimal(fields[i]);
    const auto version = ReadHexadecimal(FieldAt(fields, i + 1));
    if (version && id == product_id) return Group{*version, FieldAt(fields, i + 2)};
  }
  return std::nullopt;
}

}  // namespace

std::optional<ProgramVersion> ReadProgramVersion(std::string_view text) {
  std::array<std::uint16_t, 3> numbers{};
  const char* at = text.data();
  const char* const end = at + text.size();
  for (std::uint16_t& number : numbers) {
    if (&number != &numbers.front() && (at == end || *at++ != '.')) return std::nullopt;
    const auto [after, error] = std::from_chars(at, end, number);
    if (error != std::errc()) return std::nullopt;
    at = after;
  }
  if (at != end) return std::nullopt;
  return ProgramVersion{std::uint32_t{numbers[0]} << 16 | numbers[1],
                        std::uint32_t{numbers[2]} << 16};
}

Comparison CompareProgram(std::string_view list, ProgramVersion installed) {
  const Fields fields = FieldsOf(list, kProgramListBytes);
  const std::int32_t major = ReadDecimal(FieldAt(fields, 0));
  const std::int32_t minor = ReadDecimal(FieldAt(fields, 1));
  const std::int32_t third = ReadDecimal(FieldAt(fields, 2));
  // With 64 bits no number of the list overflows, and a negative one is older than any installed.
  const std::int64_t online = std::int64_t{major} * 0x10000 + (minor & 0xFFFF);
  const bool newer = online > installed.most ||
                     (online == installed.most && std::int64_t{third} * 0x10000 > installed.least);
  if (!newer) return NoUpdates{};
  return OfferOf(major, minor, third, FieldAt(fields, 3));
}

Comparison CompareFirmware(std::string_view list, std::uint16_t product_id, VersionWord installed) {
  const auto group = GroupOf(list, product_id);
  if (!group) return NothingToShow{};
  if (group->version <= installed) return NoUpdates{};
  return OfferOf(group->version >> 8, group->version >> 4 & 0xF, group->version & 0xF, group->page);
}

std::optional<VersionWord> ListedNodeVersion(std::string_view list, std::uint16_t product_id) {
  const auto group = GroupOf(list, product_id);
  if (!group) return std::nullopt;
  return group->version;
}

}  // namespace quillon
