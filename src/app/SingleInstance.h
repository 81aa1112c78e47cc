// SPDX-License-Identifier: MIT
#pragma once

#include <memory>

namespace quillon {

// Marks that the program runs, once for each user's session, for as long as the object lives. On
// Windows a named mutex; elsewhere a lock on a file in the user's run-time folder, which the kernel
// lets go when the process ends, however it ends.
class SingleInstance {
 public:
  SingleInstance();
  ~SingleInstance();
  SingleInstance(const SingleInstance&) = delete;
  SingleInstance& operator=(const SingleInstance&) = delete;

  // True when another process has the mark. Where no mark can be set at all, the answer is false:
  // better two windows than none.
  bool IsTaken() const { return taken_; }

 private:
  struct Handle;
  std::unique_ptr<Handle> handle_;
  bool taken_ = false;
};

}  // namespace quillon
