// SPDX-License-Identifier: MIT
#include <fcntl.h>
#include <sys/file.h>
#include <unistd.h>

#include <cerrno>
#include <cstdlib>
#include <filesystem>

#include "app/SingleInstance.h"

namespace quillon {
namespace {

// XDG_RUNTIME_DIR belongs to the user alone (XDG Base Directory Specification); without it the
// state folder does as well.
std::filesystem::path LockFolder() {
  namespace fs = std::filesystem;
  if (const char* folder = std::getenv("XDG_RUNTIME_DIR"); folder != nullptr && *folder == '/') {
    return folder;
  }
  fs::path state;
  if (const char* folder = std::getenv("XDG_STATE_HOME"); folder != nullptr && *folder == '/') {
    state = folder;
  } else if (const char* home = std::getenv("HOME"); home != nullptr) {
    state = fs::path(home) / ".local" / "state";
  }
  std::error_code ignored;
  fs::create_directories(state / "quillon", ignored);
  return state / "quillon";
}

}  // namespace

struct SingleInstance::Handle {
  int file = -1;
};

SingleInstance::SingleInstance() : handle_(std::make_unique<Handle>()) {
  const auto path = LockFolder() / "quillon.lock";
  handle_->file = open(path.c_str(), O_RDWR | O_CREAT | O_CLOEXEC | O_NOFOLLOW, 0600);
  taken_ =
      handle_->file >= 0 && flock(handle_->file, LOCK_EX | LOCK_NB) != 0 && errno == EWOULDBLOCK;
}

SingleInstance::~SingleInstance() {
  if (handle_->file >= 0) close(handle_->file);
}

}  // namespace quillon
