// SPDX-License-Identifier: MIT
#pragma once

#include <QString>
#include <optional>

#include "update/lists/VersionLists.h"

namespace quillon {

// The version of this program as it is installed: on Windows what the program's own file says,
// elsewhere what it was built as.
struct InstalledVersion {
  QString text;  // for the About box
  std::optional<ProgramVersion> numbers;
};

// Empty if it cannot be found out.
InstalledVersion ReadInstalledVersion();

}  // namespace quillon
