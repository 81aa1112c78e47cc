// SPDX-License-Identifier: MIT
#include <gmock/gmock.h>

#include "update/lists/VersionLists.h"

namespace quillon {
namespace {

using namespace std::string_literals;

// What the user is told: "-", "none", or the question and the page that a yes opens.
std::string Told(const Comparison& comparison) {
  if (std::holds_alternative<NothingToShow>(comparison)) return "-";
  const auto* offer = std::get_if<UpdateOffer>(&comparison);
  return offer ? offer->question + offer->page : "none";
}

std::string Offer(const std::string& version, const std::string& page = "") {
  return "New version " + version + " is available online. Visit online update page?" + page;
}

TEST(VersionLists, OfferANewerProgramInHexadecimal) {
  const struct {
    std::string list, told;
  } cases[]{
      {"1|2|10|http://a", Offer("1.2a", "http://a")},
      {"1|2|9|http://a", "none"},
      {"1|1|99|http://a", "none"},
      {"1|17|0| http://a/b c \r\nother lines", Offer("1.110", "http://a/b c")},
      {" \n+2.7 beta |x|8 or 9|http://a|more", Offer("2.08", "http://a")},
      {"2", Offer("2.00")},
      {"||99||", "none"},
      {"", "none"},
      {"<html>Not Found</html>", "none"},
      {"1|-65534|10|", Offer("1.ffff0002a")},
      {"1|65538|9|", "none"},
      {"-1|0|0|", "none"},
      {"65536|0|0|", Offer("65536.00")},
      {"99999999999999999999|99999999999999999999|-99999999999999999999|a",
       Offer("2147483647.7fffffff80000000", "a")},
      {"1|2|10|http://a\0b"s, Offer("1.2a", "http://a")},
  };
  for (const auto& c : cases) {
    EXPECT_EQ(Told(CompareProgram(c.list, {0x00010002, 0x00090005})), c.told) << c.list;
  }
}

TEST(VersionLists, OfferABoardTheFirmwareOfItsGroup) {
  const struct {
    std::string list, told;
    std::optional<VersionWord> of_nodes;
  } cases[]{
      {"0800|0120|http://b|0910|0283| http://a", Offer("2.83", "http://a"), 0x283},
      {"0910|12FA", Offer("18.fa"), 0x12FA},
      {"0910|0282|http://a|0910|0283|http://b", "none", 0x282},
      {"0800|0120|b|\r\n0910\r\n| +291 |http://a\r\n|", Offer("2.91", "http://a"), 0x291},
      {"09101|02834|a", Offer("2.83", "a"), 0x283},
      {"910z|3g|a", "none", 3},
      {"0910|later|a|0910||b|0910|0290|c", Offer("2.90", "c"), 0x290},
      {"0910\0|0283|a"s, "-", {}},
      {"0800|0910|0283", "-", {}},
      {"0910", "-", {}},
      {"0910 0283 a", "-", {}},
  };
  for (const auto& c : cases) {
    EXPECT_EQ(Told(CompareFirmware(c.list, 0x0910, 0x0282)), c.told) << c.list;
    EXPECT_EQ(ListedNodeVersion(c.list, 0x0910), c.of_nodes) << c.list;
  }
  EXPECT_EQ(Told(CompareFirmware("|0283|a|||", 0, 0)), "-") << "no digits are not the id 0";
}

TEST(VersionLists, EndAtTheirLimit) {
  for (const std::size_t size : {511U, 512U, 513U}) {
    const std::string page(size - 6, 'a'), read = page.substr(0, 506);
    EXPECT_EQ(Told(CompareProgram("2|0|0|" + page, {})), Offer("2.00", read)) << size;
    // The list's last digit is its byte number size + 512.
    const std::string groups = "0800|0120|" + std::string(size + 492, 'b') + "|0910|0283";
    EXPECT_EQ(ListedNodeVersion(groups, 0x0910), size > 512 ? 0x28 : 0x283) << size;
  }
}

TEST(VersionLists, AProgramSaysItsOwnVersionInThreeNumbers) {
  EXPECT_EQ(ReadProgramVersion("65535.2.10"), (ProgramVersion{0xFFFF0002, 0x000A0000}));
  for (const auto* text : {"", "1.2", "1.2.", "1.2.3.4", "1.2.65536", "1.-2.3", "1.2.3-rc"}) {
    EXPECT_EQ(ReadProgramVersion(text), std::nullopt) << text;
  }
}

}  // namespace
}  // namespace quillon
