// SPDX-License-Identifier: MIT
#pragma once

#include <filesystem>
#include <string>
#include <string_view>

namespace quillon {

// The path that a text in UTF-8 names. A path made of the text itself would be read in the code
// page of a Windows system.
inline std::filesystem::path FilePath(std::string_view utf8) {
  return std::u8string(utf8.begin(), utf8.end());
}

}  // namespace quillon
