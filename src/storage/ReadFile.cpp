// SPDX-License-Identifier: MIT
#include "storage/ReadFile.h"

#include <cerrno>

namespace quillon {

FileProblem FileProblem::OfErrno(const std::string& what) {
  const std::error_code code(errno, std::generic_category());
  return {what + ": " + code.message(), code};
}

std::variant<std::string, FileProblem> ReadFile(const std::filesystem::path& file,
                                                std::size_t most) {
  auto content = ReadFileFront(file, most + 1);
  const auto* const bytes = std::get_if<std::string>(&content);
  if (bytes == nullptr || bytes->size() <= most) return content;
  return FileProblem{"is larger than " + std::to_string(most) + " bytes", {}};
}

}  // namespace quillon
