// SPDX-License-Identifier: MIT
#pragma once

#include <filesystem>
#include <string>
#include <variant>

#include "boards/Rig.h"

namespace quillon::sim {

// The rig of a file, or a sentence that names the file and says why it cannot be used.
std::variant<Rig, std::string> ReadRigFile(const std::filesystem::path& file);

}  // namespace quillon::sim
