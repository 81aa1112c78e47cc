// SPDX-License-Identifier: MIT
#include "storage/Leftovers.h"

#include <charconv>
#include <string_view>

#include "storage/ReplaceFile.h"

namespace quillon {
namespace {

namespace fs = std::filesystem;

constexpr std::string_view kTemporary = ".tmp";

}  // namespace

std::string OwnEnding(long process) {
  return '.' + std::to_string(process) + std::string(kTemporary);
}

void RemoveLeftovers(const fs::path& file) {
  std::error_code error;
  std::error_code ignored;
  const std::string begin = file.filename().string() + ".";
  const fs::path folder = file.has_parent_path() ? file.parent_path() : ".";
  fs::directory_iterator entries(folder, error);
  for (; !error && entries != fs::directory_iterator(); entries.increment(error)) {
    const std::string name = entries->path().filename().string();
    if (!name.starts_with(begin) || !name.ends_with(kTemporary)) continue;
    if (name.size() <= begin.size() + kTemporary.size()) continue;
    const std::string_view number =
        std::string_view(name).substr(begin.size(), name.size() - begin.size() - kTemporary.size());
    int process = 0;
    const auto [end, wrong] =
        std::from_chars(number.data(), number.data() + number.size(), process);
    if (wrong != std::errc() || end != number.data() + number.size() || process <= 0) continue;
    if (HasEnded(process)) fs::remove(entries->path(), ignored);
  }
}

}  // namespace quillon
