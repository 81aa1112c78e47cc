// SPDX-License-Identifier: MIT
#pragma once

#include <filesystem>
#include <memory>
#include <string>

namespace quillon {

// Marks that the program runs, once for each user, for as long as the object lives. On Windows a
// named mutex; elsewhere a lock on a file, which the kernel releases when the process ends, in
// whatever way.
//
// The file is in a folder that belongs to the user alone: /tmp/quillon-<user id>, because every
// start finds that one, whatever its environment says. If it belongs to somebody else, is a link,
// or is open to others, the file is in "quillon" in XDG_RUNTIME_DIR, else in the state folder
// (XDG_STATE_HOME, ~/.local/state).
class SingleInstance {
 public:
  // `temporary` stands for /tmp. Windows does not need it.
  explicit SingleInstance(const std::filesystem::path& temporary = "/tmp");
  ~SingleInstance();
  SingleInstance(const SingleInstance&) = delete;
  SingleInstance& operator=(const SingleInstance&) = delete;

  // True when another process has the mark. Where no mark can be set at all, the answer is false:
  // better two windows than none.
  bool IsTaken() const { return taken_; }

  // Why no mark can be set, as a sentence; empty when one can.
  const std::string& Problem() const { return problem_; }

 private:
  struct Handle;
  std::unique_ptr<Handle> handle_;
  bool taken_ = false;
  std::string problem_;
};

}  // namespace quillon
