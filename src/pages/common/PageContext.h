// SPDX-License-Identifier: MIT
#pragma once

#include "devlink/BoardLink.h"
#include "pages/common/UserPrompts.h"

namespace quillon {

class StackRun;

// What every page is given: the boards, a way to ask the user, and the window's long work, of which
// there is one at a time. All outlive the pages.
struct PageContext {
  BoardLink& link;
  UserPrompts& prompts;
  StackRun& run;
};

}  // namespace quillon
