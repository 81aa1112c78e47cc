// SPDX-License-Identifier: MIT
#include "access/UdevRule.h"

#include <array>
#include <charconv>
#include <string>
#include <variant>

#include "storage/ReadFile.h"

namespace quillon {
namespace {

namespace fs = std::filesystem;

constexpr std::array<std::string_view, 5> kFolders{kRuleFolder, "/run/udev/rules.d",
                                                   "/usr/local/lib/udev/rules.d",
                                                   "/usr/lib/udev/rules.d", "/lib/udev/rules.d"};

// Far more than a rule has.
constexpr std::size_t kMostBytes = 64 * 1024;
constexpr std::string_view kVersionMark = "# Quillon udev rule, version ";

// 0 for a text without a version.
unsigned VersionOf(std::string_view text) {
  if (!text.starts_with(kVersionMark)) return 0;
  text.remove_prefix(kVersionMark.size());
  unsigned version = 0;
  const auto [end, error] = std::from_chars(text.data(), text.data() + text.size(), version);
  return error == std::errc() ? version : 0;
}

// As udev sees it: links are followed.
bool IsMask(const fs::path& file) {
  std::error_code failed;
  if (fs::is_character_file(file, failed)) return true;
  return fs::file_size(file, failed) == 0 && !failed;
}

RuleState StateOf(const fs::path& file) {
  if (IsMask(file)) return RuleState::kMasked;
  // What cannot be read has no version.
  const auto content = ReadFile(file, kMostBytes);
  const auto* const text = std::get_if<std::string>(&content);
  const unsigned version = text == nullptr ? 0 : VersionOf(*text);
  return version < VersionOf(RuleText()) ? RuleState::kOutdated : RuleState::kCurrent;
}

}  // namespace

FoundRule FindRule(const fs::path& root) {
  for (const std::string_view folder : kFolders) {
    const fs::path file = root / fs::path(folder).relative_path() / kRuleFile;
    std::error_code ignored;
    if (!fs::exists(fs::symlink_status(file, ignored))) continue;
    return {StateOf(file), file};
  }
  return {};
}

}  // namespace quillon
