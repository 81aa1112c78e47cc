// SPDX-License-Identifier: MIT
#include <fcntl.h>
#include <signal.h>
#include <sys/stat.h>
#include <unistd.h>

#include <cerrno>
#include <string>

#include "storage/Leftovers.h"
#include "storage/ReplaceFile.h"

namespace quillon {
namespace {

namespace fs = std::filesystem;

std::optional<FileProblem> WriteAll(int file, std::string_view bytes) {
  while (!bytes.empty()) {
    const ssize_t written = write(file, bytes.data(), bytes.size());
    if (written < 0 && errno == EINTR) continue;
    if (written < 0) return FileProblem::OfErrno("cannot be written");
    bytes.remove_prefix(static_cast<std::size_t>(written));
  }
  return std::nullopt;
}

// Without waiting, because a pipe that nobody reads would block for ever.
std::optional<FileProblem> WriteInto(const fs::path& file, std::string_view bytes) {
  const int opened = open(file.c_str(), O_WRONLY | O_CLOEXEC | O_NONBLOCK | O_NOCTTY);
  if (opened < 0) return FileProblem::OfErrno("cannot be opened");
  fcntl(opened, F_SETFL, O_WRONLY);
  auto problem = WriteAll(opened, bytes);
  close(opened);
  return problem;
}

// The name carries the process, so that two of them never share a file.
fs::path TemporaryOf(const fs::path& file) {
  fs::path temporary = file;
  temporary += OwnEnding(getpid());
  return temporary;
}

std::optional<FileProblem> WriteTemporary(const fs::path& file, std::string_view bytes,
                                          mode_t created, std::optional<mode_t> mode) {
  unlink(file.c_str());
  const int opened = open(file.c_str(), O_WRONLY | O_CREAT | O_EXCL | O_CLOEXEC, created);
  if (opened < 0) return FileProblem::OfErrno("cannot be written");
  auto problem = WriteAll(opened, bytes);
  if (!problem && mode && fchmod(opened, *mode) != 0)
    problem = FileProblem::OfErrno("cannot be written");
  if (!problem && fsync(opened) != 0) problem = FileProblem::OfErrno("cannot be written");
  if (close(opened) != 0 && !problem) problem = FileProblem::OfErrno("cannot be written");
  return problem;
}

// So that the name is on the disk too. Some file systems cannot; the file is replaced all the same.
void SyncFolder(const fs::path& file) {
  const fs::path folder = file.has_parent_path() ? file.parent_path() : ".";
  const int opened = open(folder.c_str(), O_RDONLY | O_DIRECTORY | O_CLOEXEC);
  if (opened < 0) return;
  fsync(opened);
  close(opened);
}

}  // namespace

std::optional<FileProblem> ReplaceFile(const fs::path& file, std::string_view bytes,
                                       FileReaders readers) {
  struct stat old {};
  const bool exists = stat(file.c_str(), &old) == 0;
  if (exists && S_ISDIR(old.st_mode)) return FileProblem{"is a folder", {}};
  if (exists && !S_ISREG(old.st_mode)) return WriteInto(file, bytes);
  std::error_code error;
  const fs::path target = exists ? fs::canonical(file, error) : file;
  if (error) return FileProblem{"cannot be written: " + error.message(), error};
  const bool owner = readers == FileReaders::kOwner;
  std::optional<mode_t> mode;
  if (exists && !owner) mode = old.st_mode & 07777;
  const fs::path temporary = TemporaryOf(target);
  auto problem = WriteTemporary(temporary, bytes, owner ? 0600 : 0666, mode);
  if (!problem && rename(temporary.c_str(), target.c_str()) != 0)
    problem = FileProblem::OfErrno("cannot be written");
  if (problem) {
    unlink(temporary.c_str());
  } else {
    SyncFolder(target);
  }
  return problem;
}

bool HasEnded(int process) { return kill(process, 0) != 0 && errno == ESRCH; }

}  // namespace quillon
