// SPDX-License-Identifier: MIT
#include <algorithm>
#include <fstream>

#include "storage/ReadFile.h"

namespace quillon {

std::variant<std::string, FileProblem> ReadFileFront(const std::filesystem::path& file,
                                                     std::size_t most) {
  namespace fs = std::filesystem;
  std::error_code code;
  const fs::file_status status = fs::status(file, code);
  if (status.type() == fs::file_type::not_found)
    code = std::make_error_code(std::errc::no_such_file_or_directory);
  if (code) return FileProblem{"cannot be opened: " + code.message(), code};
  if (fs::is_directory(status)) return FileProblem{"is a folder", {}};
  if (!fs::is_regular_file(status)) return FileProblem{"is not a regular file", {}};
  const auto size = fs::file_size(file, code);
  if (code) return FileProblem{"cannot be read: " + code.message(), code};
  std::ifstream stream(file, std::ios::binary);
  if (!stream.is_open()) return FileProblem{"cannot be opened", {}};
  std::string bytes(static_cast<std::size_t>(std::min<std::uintmax_t>(size, most)), '\0');
  stream.read(bytes.data(), static_cast<std::streamsize>(bytes.size()));
  if (stream.bad()) return FileProblem{"cannot be read", {}};
  bytes.resize(static_cast<std::size_t>(stream.gcount()));
  return bytes;
}

}  // namespace quillon
