// SPDX-License-Identifier: MIT
#pragma once

#include <cstddef>
#include <filesystem>

namespace quillon::conformance {

// What this process holds open (descriptors, handles), or -1 where the system does not tell.
std::ptrdiff_t OpenDescriptors();

// The file of this program; `name` is what it was started as, for where the system does not tell.
std::filesystem::path ProgramFile(const char* name);

}  // namespace quillon::conformance
