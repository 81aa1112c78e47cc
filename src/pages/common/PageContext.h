// SPDX-License-Identifier: MIT
#pragma once

#include "devlink/BoardLink.h"
#include "pages/common/UserPrompts.h"

namespace quillon {

// What every page is given: the boards, and a way to ask the user. Both outlive the pages.
struct PageContext {
  BoardLink& link;
  UserPrompts& prompts;
};

}  // namespace quillon
