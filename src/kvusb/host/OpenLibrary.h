// SPDX-License-Identifier: MIT
#pragma once

#include <filesystem>
#include <functional>
#include <memory>
#include <string>
#include <variant>

#include "devlink/GuardedCall.h"
#include "kvusb/HidLibrary.h"

namespace quillon {

struct OpenOptions {
  // Where the host programs are: there, or in ../lib/quillon as installed.
  std::filesystem::path program_folder;
  // As of LoadLibraryFile(); a host's library has none.
  ThrowHandler thrown = {};
  // Called inside a call of the library when its host has ended.
  std::function<void()> host_ended = {};
};

// Whether the environment asks for a host for every library: QUILLON_KVUSB_HOST is 1.
bool IsHostWanted();

// Whether the file goes into a host of its own: because that is wanted or, on Windows, because the
// file is made for 32 bits and this program is not.
bool NeedsHost(const std::filesystem::path& file);

// The library in the file, in this process or in a host. Or a sentence that names the file and says
// why it cannot be used.
std::variant<std::unique_ptr<HidLibrary>, std::string> OpenLibraryFile(
    const std::filesystem::path& file, const OpenOptions& options);

}  // namespace quillon
