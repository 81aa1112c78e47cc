// SPDX-License-Identifier: MIT
#include <fcntl.h>
#include <sys/file.h>
#include <sys/stat.h>
#include <unistd.h>

#include <cerrno>
#include <cstdlib>
#include <optional>
#include <system_error>
#include <vector>

#include "app/SingleInstance.h"

namespace quillon {
namespace {

namespace fs = std::filesystem;

// What is not absolute counts as missing (XDG Base Directory Specification).
std::optional<fs::path> FolderIn(const char* variable) {
  const char* const folder = std::getenv(variable);
  if (folder == nullptr || *folder != '/') return std::nullopt;
  return folder;
}

std::vector<fs::path> Folders(const fs::path& temporary) {
  std::vector<fs::path> folders{temporary / ("quillon-" + std::to_string(geteuid()))};
  // This folder is not ours to make: where the system has made none, there is no session.
  const auto runtime = FolderIn("XDG_RUNTIME_DIR");
  std::error_code ignored;
  if (runtime && fs::is_directory(*runtime, ignored)) folders.push_back(*runtime / "quillon");
  auto state = FolderIn("XDG_STATE_HOME");
  if (const auto home = FolderIn("HOME"); home && !state) state = *home / ".local" / "state";
  if (state) folders.push_back(*state / "quillon");
  return folders;
}

// Opens a file or folder if it is of this kind, belongs to the user, and nobody else may write to
// it; else returns -1 and sets errno. Does not wait at a pipe.
int OpenOwn(int folder, const char* name, int flags, mode_t kind) {
  const int opened =
      openat(folder, name, flags | O_CLOEXEC | O_NOFOLLOW | O_NONBLOCK | O_NOCTTY, 0600);
  struct stat found {};
  if (opened < 0 || fstat(opened, &found) != 0) return opened;
  const bool own = (found.st_mode & S_IFMT) == kind && found.st_uid == geteuid() &&
                   (found.st_mode & (S_IWGRP | S_IWOTH)) == 0;
  if (own) return opened;
  close(opened);
  errno = EPERM;
  return -1;
}

int OpenLock(const fs::path& folder) {
  std::error_code ignored;
  fs::create_directories(folder.parent_path(), ignored);
  mkdir(folder.c_str(), 0700);
  const int opened = OpenOwn(AT_FDCWD, folder.c_str(), O_RDONLY | O_DIRECTORY, S_IFDIR);
  if (opened < 0) return opened;
  const int file = OpenOwn(opened, "quillon.lock", O_RDWR | O_CREAT, S_IFREG);
  const int error = errno;
  close(opened);
  errno = error;
  return file;
}

}  // namespace

struct SingleInstance::Handle {
  int file = -1;
};

SingleInstance::SingleInstance(const fs::path& temporary) : handle_(std::make_unique<Handle>()) {
  std::string reasons;
  for (const fs::path& folder : Folders(temporary)) {
    const int file = OpenLock(folder);
    if (file >= 0 && flock(file, LOCK_EX | LOCK_NB) == 0) {
      handle_->file = file;
      return;
    }
    const std::error_code error(errno, std::generic_category());
    if (file >= 0) close(file);
    taken_ = file >= 0 && error == std::errc::operation_would_block;
    if (taken_) return;
    reasons += (reasons.empty() ? "" : "; ") + folder.string() + ": " + error.message();
  }
  problem_ = "Quillon cannot tell whether it is running already (" + reasons + ").";
}

SingleInstance::~SingleInstance() {
  if (handle_->file >= 0) close(handle_->file);
}

}  // namespace quillon
