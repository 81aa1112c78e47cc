// SPDX-License-Identifier: MIT
#pragma once

#include <filesystem>
#include <memory>
#include <optional>
#include <string_view>
#include <variant>

#include "storage/ReadFile.h"

namespace quillon {

// The file that a trace goes to: a new file, an old one (which loses what it held), a device or a
// pipe. Nothing here ever waits: a board may be in the middle of an update, and a trace is worth
// less than that. A file is the user's alone, because a trace holds serial numbers and firmware.
class TraceFile {
 public:
  virtual ~TraceFile() = default;

  // Writes all of the text, or says what kept it from that. A file then ends with the text before.
  virtual std::optional<FileProblem> Write(std::string_view text) = 0;
};

std::variant<std::unique_ptr<TraceFile>, FileProblem> OpenTraceFile(
    const std::filesystem::path& path);

// From now on whatever this process writes to a pipe that nobody reads, or to a file beyond the
// limit set for it, fails, and does not end the process.
void LetWritesFail();

}  // namespace quillon
