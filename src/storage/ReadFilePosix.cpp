// SPDX-License-Identifier: MIT
#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>

#include <algorithm>
#include <cerrno>

#include "storage/ReadFile.h"

namespace quillon {
namespace {

// The first `most` bytes.
std::variant<std::string, FileProblem> ReadOpened(int file, std::size_t most) {
  struct stat kind {};
  if (fstat(file, &kind) != 0) return FileProblem::OfErrno("cannot be read");
  if (S_ISDIR(kind.st_mode)) return FileProblem{"is a folder", {}};
  if (!S_ISREG(kind.st_mode)) return FileProblem{"is not a regular file", {}};
  // An attribute in /sys announces a page and holds a line, so the size is only a hint.
  constexpr std::size_t kStep = 4096;
  std::string bytes;
  for (;;) {
    const std::size_t had = bytes.size();
    bytes.resize(std::min(had + std::max(had, kStep), most));
    const ssize_t got = read(file, bytes.data() + had, bytes.size() - had);
    if (got < 0 && errno == EINTR) {
      bytes.resize(had);
      continue;
    }
    if (got < 0) return FileProblem::OfErrno("cannot be read");
    bytes.resize(had + static_cast<std::size_t>(got));
    if (got == 0 || bytes.size() == most) return bytes;
  }
}

}  // namespace

std::variant<std::string, FileProblem> ReadFileFront(const std::filesystem::path& file,
                                                     std::size_t most) {
  // Without waiting, because opening a pipe would last until somebody writes to it.
  const int opened = open(file.c_str(), O_RDONLY | O_CLOEXEC | O_NONBLOCK | O_NOCTTY);
  if (opened < 0) return FileProblem::OfErrno("cannot be opened");
  auto content = ReadOpened(opened, most);
  close(opened);
  return content;
}

}  // namespace quillon
