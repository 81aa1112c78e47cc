// SPDX-License-Identifier: MIT
#include <algorithm>
#include <cstdint>
#include <cstdio>
#include <cstdlib>
#include <initializer_list>
#include <string>

#include "update/lists/VersionLists.h"

// Reads any bytes as each of the version lists, and holds what comes out to VersionLists.h.
namespace {

using quillon::CompareFirmware;
using quillon::CompareProgram;
using quillon::Comparison;
using quillon::ListedNodeVersion;

void Require(bool holds, const char* claim) {
  if (holds) return;
  std::fprintf(stderr, "not true: %s\n", claim);
  std::abort();
}

bool IsOffer(const Comparison& told) { return std::holds_alternative<quillon::UpdateOffer>(told); }

void CheckOffer(const Comparison& told, const std::string& list) {
  const auto* offer = std::get_if<quillon::UpdateOffer>(&told);
  if (offer == nullptr) return;
  Require(offer->question.starts_with("New version ") &&
              offer->question.ends_with(" is available online. Visit online update page?"),
          "the question is whole");
  Require(list.find(offer->page) != std::string::npos, "the page stands in the list");
  Require(offer->page.find_first_of(std::string("|\r\n\0", 4)) == std::string::npos,
          "a page is one field of one line");
}

void CheckProgram(const std::string& list) {
  constexpr quillon::ProgramVersion kInstalled{0x00010002, 0x00090000}, kOlder{0x00010001, 0};
  const Comparison told = CompareProgram(list, kInstalled);
  CheckOffer(told, list.substr(0, quillon::kProgramListBytes));
  Require(!std::holds_alternative<quillon::NothingToShow>(told), "there is something to show");
  Require(!IsOffer(told) || IsOffer(CompareProgram(list, kOlder)),
          "what is newer than a version is newer than an older one");
  Require(told == CompareProgram(list + std::string("\0|9", 3), kInstalled),
          "a list ends at a NUL");
}

void CheckGroups(const std::string& list) {
  for (const std::uint16_t product : std::initializer_list<std::uint16_t>{0, 0x0800, 0x0910}) {
    const Comparison told = CompareFirmware(list, product, 0x0282);
    CheckOffer(told, list.substr(0, quillon::kGroupListBytes));
    const auto version = ListedNodeVersion(list, product);
    Require(version.has_value() != std::holds_alternative<quillon::NothingToShow>(told),
            "boards and nodes find their groups alike");
    Require((version > 0x0282) == IsOffer(told), "what is newer is offered");
  }
}

// Hexadecimal fields mean what the C library says.
void CheckNumber(const std::string& list) {
  std::string field = list.substr(0, std::min({list.find('|'), list.find('\0'), list.size()}));
  field.resize(std::min<std::size_t>(field.size(), 100));
  // C libraries do not agree on an "x" without digits.
  if (field.find_first_of("xX") != std::string::npos) return;
  unsigned number = 0;
  const bool has_digits = std::sscanf(field.c_str(), "%04X", &number) == 1;
  const std::string groups = field + "|0001|";
  const auto product = static_cast<std::uint16_t>(number & 0xFFFF);
  Require(ListedNodeVersion(groups, product).has_value() == has_digits,
          "a product id is read as %04X");
}

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
  const std::string list(data, data + size);
  CheckProgram(list);
  CheckGroups(list);
  CheckNumber(list);
  return 0;
}
