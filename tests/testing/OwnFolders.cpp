// SPDX-License-Identifier: MIT
#include "testing/OwnFolders.h"

#include <cstdlib>
#include <stdexcept>
#include <string>

namespace quillon::testing {
namespace {

std::filesystem::path root;

}  // namespace

OwnFolders::OwnFolders() {
  std::string pattern = (std::filesystem::temp_directory_path() / "quillon-test-XXXXXX").string();
  if (mkdtemp(pattern.data()) == nullptr) throw std::runtime_error("no folder for the test");
  root = pattern;
  for (const char* name : {"HOME", "XDG_CONFIG_HOME", "XDG_STATE_HOME", "XDG_CACHE_HOME",
                           "XDG_DATA_HOME", "XDG_RUNTIME_DIR"}) {
    const auto folder = root / name;
    std::filesystem::create_directory(folder);
    std::filesystem::permissions(folder, std::filesystem::perms::owner_all);
    setenv(name, folder.c_str(), 1);
  }
  for (const char* name : {"QUILLON_KVUSB", "QUILLON_TRACE", "QUILLON_SIM_RIG", "QUILLON_SIM_STATE",
                           "QUILLON_SIM_LATENCY_US", "QUILLON_REPLAY", "QUILLON_FIRMWARE_DIR"}) {
    unsetenv(name);
  }
}

OwnFolders::~OwnFolders() {
  std::error_code ignored;
  std::filesystem::remove_all(root, ignored);
}

std::filesystem::path OwnFolders::Root() { return root; }

}  // namespace quillon::testing
