// SPDX-License-Identifier: MIT
#pragma once

#include <filesystem>

namespace quillon::testing {

// Gives a test process a home, profile, state, cache and run-time folder of its own (all the XDG
// base directories) below one new folder, and takes every QUILLON_ variable away, so that no test
// sees the user's files or another test's. The folder goes with the object.
class OwnFolders {
 public:
  OwnFolders();
  ~OwnFolders();
  OwnFolders(const OwnFolders&) = delete;
  OwnFolders& operator=(const OwnFolders&) = delete;

  // The new folder; tests put scratch files here too.
  static std::filesystem::path Root();
};

}  // namespace quillon::testing
