// SPDX-License-Identifier: MIT
#pragma once

#include <cstdint>
#include <filesystem>
#include <string_view>

// Linux lets only root open a board, unless a udev rule says otherwise. Ours gives the boards to
// the user who sits at the machine.
namespace quillon {

inline constexpr std::string_view kRuleFile = "70-quillon.rules";
// Where an administrator's rules are; what stands there hides rules of the same name elsewhere.
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

// Looks for the rule where udev does: of the files with its name, the first in udev's order of
// folders is the only one that counts. `root` stands for "/".
FoundRule FindRule(const std::filesystem::path& root = "/");

}  // namespace quillon
