// SPDX-License-Identifier: MIT
#pragma once

#include <cstdint>
#include <filesystem>
#include <string_view>

// Linux lets only root open a board, unless a udev rule says otherwise. Ours gives the boards to
// the user who sits at the machine.
namespace quillon {

inline constexpr std::string_view kRuleFile = "70-quillon.rules";
// The folder for an administrator's rules. A file here hides files of the same name in udev's other
// folders.
inline constexpr std::string_view kRuleFolder = "/etc/udev/rules.d";

// The whole rule file. Its first line ends with a version, which goes up with every change.
std::string_view RuleText();

enum class RuleState : std::uint8_t {
  kMissing,
  kOutdated,  // of a lower version than ours, or without one
  kCurrent,   // of our version, or of a later program's
  kMasked,    // turned off, by an empty file or a link to /dev/null in place of the rule
};

struct FoundRule {
  RuleState state = RuleState::kMissing;
  std::filesystem::path file{};  // the one that counts; empty when missing
};

// Looks for the rule in udev's folders, in udev's order. Only the first file of this name counts.
// `root` stands for "/".
FoundRule FindRule(const std::filesystem::path& root = "/");

}  // namespace quillon
