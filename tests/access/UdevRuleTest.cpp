// SPDX-License-Identifier: MIT
#include <gmock/gmock.h>

#include <fstream>
#include <string>

#include "access/UdevRule.h"
#include "testing/OwnFolders.h"

namespace quillon::testing {
namespace {

namespace fs = std::filesystem;

constexpr const char* kEtc = "etc/udev/rules.d";
constexpr const char* kRun = "run/udev/rules.d";
constexpr const char* kLocal = "usr/local/lib/udev/rules.d";
constexpr const char* kUsr = "usr/lib/udev/rules.d";
constexpr const char* kLib = "lib/udev/rules.d";

fs::path RuleIn(const char* folder) { return OwnFolders::Root() / folder / "70-quillon.rules"; }

void Write(const char* folder, const std::string& text) {
  fs::create_directories(RuleIn(folder).parent_path());
  fs::remove(RuleIn(folder));
  std::ofstream(RuleIn(folder)) << text;
}

void ExpectFound(RuleState state, const char* folder) {
  const FoundRule found = FindRule(OwnFolders::Root());
  EXPECT_EQ(found.state, state);
  EXPECT_EQ(found.file, RuleIn(folder));
}

}  // namespace

TEST(UdevRule, IsTheOneFoundFirstInTheOrderOfUdev) {
  EXPECT_EQ(FindRule(OwnFolders::Root()).state, RuleState::kMissing);
  EXPECT_EQ(FindRule(OwnFolders::Root()).file, "");
  bool outdated = true;  // each hides the one before, which says otherwise
  for (const char* folder : {kLib, kUsr, kLocal, kRun, kEtc}) {
    SCOPED_TRACE(folder);
    Write(folder, outdated ? "# Quillon udev rule, version 0\n" : std::string(RuleText()));
    ExpectFound(outdated ? RuleState::kOutdated : RuleState::kCurrent, folder);
    outdated = !outdated;
  }
}

TEST(UdevRule, IsJudgedByTheVersionInItsFirstLine) {
  const std::pair<const char*, RuleState> cases[]{
      {"# Quillon udev rule, version 1\nand whatever follows", RuleState::kCurrent},
      {"# Quillon udev rule, version 99999\n", RuleState::kCurrent},
      {"# Quillon udev rule, version 0", RuleState::kOutdated},
      {"# Quillon udev rule, version \n", RuleState::kOutdated},
      {"# Quillon udev rule, version -1\n", RuleState::kOutdated},
      {"# Quillon udev rule, version 99999999999999999999\n", RuleState::kOutdated},
      {"\n# Quillon udev rule, version 1\n", RuleState::kOutdated},
      {"SUBSYSTEM==\"hidraw\", MODE=\"0666\"\n", RuleState::kOutdated},
  };
  for (const auto& [text, state] : cases) {
    SCOPED_TRACE(text);
    Write(kEtc, text);
    ExpectFound(state, kEtc);
  }
}

TEST(UdevRule, IsTurnedOffByAnEmptyFileOrALinkToNowhere) {
  Write(kUsr, std::string(RuleText()));
  Write(kRun, "");
  ExpectFound(RuleState::kMasked, kRun);
  fs::create_directories(RuleIn(kEtc).parent_path());
  fs::create_symlink("/dev/null", RuleIn(kEtc));
  ExpectFound(RuleState::kMasked, kEtc);
  fs::remove(RuleIn(kEtc));
  fs::create_symlink(RuleIn(kRun), RuleIn(kEtc));
  ExpectFound(RuleState::kMasked, kEtc);
  // A link to a rule is a rule.
  fs::remove(RuleIn(kEtc));
  fs::create_symlink(RuleIn(kUsr), RuleIn(kEtc));
  ExpectFound(RuleState::kCurrent, kEtc);
}

// What 73-seat-late.rules acts on has to be said before it, on one line for udev.
TEST(UdevRule, TagsHidrawNodesOfOurVendorInTime) {
  EXPECT_LT(kRuleFile, "73-seat-late.rules");
  std::vector<std::string> rules;
  std::string text(RuleText());
  for (std::size_t at = 0, end = 0; (end = text.find('\n', at)) != text.npos; at = end + 1) {
    if (text[at] != '#') rules.push_back(text.substr(at, end - at));
  }
  EXPECT_THAT(rules, ::testing::ElementsAre("SUBSYSTEM==\"hidraw\", SUBSYSTEMS==\"usb\", "
                                            "ATTRS{idVendor}==\"4c7e\", TAG+=\"uaccess\""));
}

}  // namespace quillon::testing
