// SPDX-License-Identifier: MIT
#pragma once

#include <cstdint>
#include <string>

#include "kvusb/kvusb.h"

namespace quillon {

// What keeps a HID library or a board from working: KVUSB_PROBLEM_..., and a sentence for the user,
// which comes from outside and is not yet fit to be shown.
struct Problem {
  std::int32_t kind = KVUSB_PROBLEM_NONE;
  std::string sentence{};

  bool operator==(const Problem&) const = default;
};

}  // namespace quillon
