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
// less than that. Only its owner may read the file, because a trace holds serial numbers and
// firmware.
class TraceFile {
 public:
  virtual ~TraceFile() = default;

  // Writes all of the text, or says why it cannot. The file then ends with the text before this
  // one.
  virtual std::optional<FileProblem> Write(std::string_view text) = 0;
};

std::variant<std::unique_ptr<TraceFile>, FileProblem> OpenTraceFile(
    const std::filesystem::path& path);

// From now on a write to a pipe that nobody reads, or beyond the limit set for file sizes, fails
// instead of ending the process.
void LetWritesFail();

}  // namespace quillon
