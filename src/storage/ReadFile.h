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
  // What a sentence says behind the file's name: "cannot be opened: Permission denied".
  std::string predicate;
  // The system's own reason; none where the file itself is not as it should be.
  std::error_code code;

  bool IsMissing() const { return code == std::errc::no_such_file_or_directory; }
  // A sentence; the subject is "It" or names the file.
  std::string Sentence(const std::string& subject) const { return subject + " " + predicate + "."; }
};

// All bytes of a file, of which there may be `most`, or why they cannot be had. Never throws for
// what it finds, and never blocks: only a regular file (an attribute in /sys is one) is read, at
// whatever end of links. A folder, a pipe, a device and a longer file are problems.
std::variant<std::string, FileProblem> ReadFile(const std::filesystem::path& file,
                                                std::size_t most);

// The same for no more than the first `most` bytes, however long the file is.
std::variant<std::string, FileProblem> ReadFileFront(const std::filesystem::path& file,
                                                     std::size_t most);

}  // namespace quillon
