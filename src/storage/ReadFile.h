// SPDX-License-Identifier: MIT
#pragma once

#include <cstddef>
#include <filesystem>
#include <string>
#include <system_error>
#include <variant>

namespace quillon {

// Why a file could not be read or written.
struct FileProblem {
  // The end of a sentence that begins with the file's name: "cannot be opened: Permission denied".
  std::string predicate;
  // The system's error code; none when the file itself is the problem, as when it is a folder or
  // too long.
  std::error_code code;

  // The problem that errno tells of; `what` is the predicate without the reason.
  static FileProblem OfErrno(const std::string& what);

  bool IsMissing() const { return code == std::errc::no_such_file_or_directory; }
  // A sentence; the subject is "It" or names the file.
  std::string Sentence(const std::string& subject) const { return subject + " " + predicate + "."; }
};

// All bytes of a file of at most `most` bytes, or why they cannot be read. Never throws for what it
// finds, and never blocks: it follows links and reads only a regular file (an attribute in /sys is
// one). A folder, a pipe, a device or a longer file is a problem.
std::variant<std::string, FileProblem> ReadFile(const std::filesystem::path& file,
                                                std::size_t most);

// The same for no more than the first `most` bytes, however long the file is.
std::variant<std::string, FileProblem> ReadFileFront(const std::filesystem::path& file,
                                                     std::size_t most);

}  // namespace quillon
