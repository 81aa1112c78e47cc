// SPDX-License-Identifier: MIT
#include "app/InstalledVersion.h"

namespace quillon {

InstalledVersion ReadInstalledVersion() {
  return {QStringLiteral(QUILLON_VERSION), ReadProgramVersion(QUILLON_VERSION)};
}

}  // namespace quillon
