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

// Makes the file hold all of these bytes, or leaves it as it was: they are written to a temporary
// file beside it, which takes the file's name once it is on the disk. Follows links. Something that
// is not a regular file (/dev/stdout) is written to directly. Returns nothing, or what went wrong;
// then an old file is still there and the temporary one is removed.
std::optional<FileProblem> ReplaceFile(const std::filesystem::path& file, std::string_view bytes,
                                       FileReaders readers);

// Removes temporary files beside `file` whose processes have ended without removing them.
void RemoveLeftovers(const std::filesystem::path& file);

}  // namespace quillon
