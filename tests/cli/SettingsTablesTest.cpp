// SPDX-License-Identifier: MIT
#include <gtest/gtest.h>

#include <array>
#include <set>

#include "cli/SettingsTables.h"

namespace quillon {
namespace {

constexpr std::array<std::uint32_t, 2> kFirstOnly{1, 0}, kSecondOnly{0, 1}, kOwn{0, 1};
constexpr std::array<std::uint32_t, 1> kOff{0};
constexpr std::array<Choice, 2> kAxes{{{"A", 0}, {"B|]", 1}}};
constexpr std::array<Choice, 1> kEchoed{{{"Echo", 0, 0, 0, false}}};
constexpr std::array<std::string_view, 2> kNames{"A", "B|]"};

constexpr std::array<Setting, 4> kSettings{{
    {.id = "x", .title = "X", .purpose = "Moves.", .field = {0, 0, 1}, .factory = kFirstOnly},
    {.id = "y", .title = "Y", .purpose = "Moves.", .field = {0, 1, 1}, .factory = kSecondOnly},
    {.id = "mate",
     .title = "  Mate :",
     .purpose = "Joins.",
     .field = {0, 2, 1},
     .choices = kAxes,
     .factory = kOwn},
    {.id = "kept", .title = "Kept", .purpose = "Lasts.", .field = {0, 3, 4}, .most = 9},
}};
constexpr std::array<Setting, 1> kLineB{{
    {.id = "b",
     .title = "Line",
     .purpose = "Follows.",
     .field = {0, 0, 1},
     .choices = kEchoed,
     .factory = kOff},
}};
constexpr std::array<Setting, 1> kSome{{
    {.id = "odd", .title = "Odd", .purpose = "Lasts.", .field = {0, 3, 4}, .most = 9},
}};
constexpr std::array<Table, 4> kTables{{
    {.id = "axis", .names = {.pattern = "", .names = kNames}, .rows = 2, .settings = kSettings},
    {.id = "line", .names = {.pattern = "In %1"}, .rows = 1, .settings = kLineB},
    {.id = "line", .names = {.pattern = "In %1", .first = 2}, .rows = 2, .settings = kLineB},
    {.id = "some", .names = {.pattern = "In %1", .step = 2}, .rows = 2, .settings = kSome},
}};
constexpr std::array<Block, 1> kBlocks{{{.id = "block", .tables = kTables}}};

TEST(SettingsTables, GathersWhatSaysTheSame) {
  const Page page{.id = "made_up", .title = "I/O  Up", .blocks = kBlocks};
  const SettingsTable table = TableOf(page, "Some board", "some-");
  EXPECT_EQ(table.name, "some-i-o-up");
  EXPECT_EQ(table.text, R"([#table-some-i-o-up]
.Some board, page pass:c[I/O  Up]
[%header,cols="17,40,27,16"]
|===
|Setting |What it does |Values |Factory value

4+h|pass:c[A, B\|\] (2 rows)]

|pass:c[X, Y]
|pass:c[Moves.]
|pass:c[on, off]
|pass:c[on: X for A, Y for B\|\]]

|pass:c[Mate]
|pass:c[Joins.]
|pass:c[A, B\|\]]
|pass:c[the row itself]

|pass:c[Kept]
|pass:c[Lasts.]
|pass:c[0 to 9]
|pass:c[stays as it is]

4+h|pass:c[In 1, In 2, … In 3 (3 rows)]

|pass:c[Line]
|pass:c[Follows.]
|pass:c[shown only: Echo]
|pass:c[Echo]

|pass:c[Odd of In 1, In 3]
|pass:c[Lasts.]
|pass:c[0 to 9]
|pass:c[stays as it is]
|===
)");
}

// A page that is forgotten, or two under one name, would be missing in the manual.
TEST(SettingsTables, HasOneOfEachPage) {
  std::set<std::string> names;
  for (const SettingsTable& table : AllSettingsTables()) names.insert(table.name);
  std::size_t pages = 4;  // of a port
  std::set<BoardFamily> families;
  for (const Product& product : Products()) {
    if (families.insert(product.family).second) pages += PagesOf(product.family).size();
  }
  EXPECT_EQ(names.size(), pages);
}

}  // namespace
}  // namespace quillon
