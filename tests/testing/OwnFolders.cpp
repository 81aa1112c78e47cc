// SPDX-License-Identifier: MIT
#include "testing/OwnFolders.h"

#include <random>
#include <stdexcept>
#include <string>

#include "testing/Environment.h"

namespace quillon::testing {
namespace {

std::filesystem::path root;

// A folder that nobody else has: the one who makes it owns it.
std::filesystem::path NewFolder() {
  std::random_device random;
  for (int attempt = 0; attempt < 100; ++attempt) {
    auto folder =
        std::filesystem::temp_directory_path() / ("quillon-test-" + std::to_string(random()));
    if (std::filesystem::create_directory(folder)) return folder;
  }
  throw std::runtime_error("no folder for the test");
}

}  // namespace

OwnFolders::OwnFolders() {
  root = NewFolder();
  for (const char* name : {"HOME", "XDG_CONFIG_HOME", "XDG_STATE_HOME", "XDG_CACHE_HOME",
                           "XDG_DATA_HOME", "XDG_RUNTIME_DIR"}) {
    const auto folder = root / name;
    std::filesystem::create_directory(folder);
    std::filesystem::permissions(folder, std::filesystem::perms::owner_all);
    SetVariable(name, folder.string());
  }
  for (const char* name : {"QUILLON_KVUSB", "QUILLON_TRACE", "QUILLON_SIM_RIG", "QUILLON_SIM_STATE",
                           "QUILLON_SIM_LATENCY_US", "QUILLON_REPLAY", "QUILLON_FIRMWARE_DIR"}) {
    UnsetVariable(name);
  }
}

OwnFolders::~OwnFolders() {
  std::error_code ignored;
  std::filesystem::remove_all(root, ignored);
}

std::filesystem::path OwnFolders::Root() { return root; }

}  // namespace quillon::testing
