// SPDX-License-Identifier: MIT
#pragma once

#include <filesystem>
#include <optional>
#include <string_view>

#include "storage/ReadFile.h"

namespace quillon {

// Who may read a file that is made.
enum class FileReaders {
  kEverybody,  // what the user's umask allows; a file that is replaced keeps its own mode
  kOwner,      // mode 0600: what holds serial numbers or firmware
};

// Makes the file hold these bytes, whole or not at all: they are written to a temporary file beside
// it, on the disk before that takes the name. At whatever end of links; what is no regular file
// (/dev/stdout) is written to as it is. Returns nothing, or what went wrong; then an old file is
// still there and the temporary one is not.
std::optional<FileProblem> ReplaceFile(const std::filesystem::path& file, std::string_view bytes,
                                       FileReaders readers);

// Removes the temporary files that processes which have ended left beside `file`.
void RemoveLeftovers(const std::filesystem::path& file);

}  // namespace quillon
