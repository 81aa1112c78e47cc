// SPDX-License-Identifier: MIT
#include "firmware/VersionWord.h"

namespace quillon {

VersionNumbers FormatVersion(VersionWord version) {
  return {(version >> 12) * 10 + (version >> 8 & 0xF), version >> 4 & 0xF, version & 0xF};
}

std::string VersionText(VersionWord version) {
  const VersionNumbers numbers = FormatVersion(version);
  return std::to_string(numbers.major) + "." + std::to_string(numbers.minor) +
         std::to_string(numbers.patch);
}

}  // namespace quillon
