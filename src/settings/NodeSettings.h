// SPDX-License-Identifier: MIT
#pragma once

#include <span>

#include "settings/Setting.h"

// The settings of the node I/O system, which all belong to ports of its nodes. The blocks are drawn
// in NodeBlocks.h.
namespace quillon {

// The pages of the board: all of its ports.
std::span<const Page> NodeSystemPages();

// The pages of one port, in the order of its tabs.
std::span<const Page> PortPages();

// The port's page of that name; null where there is none.
const Page* FindPortPage(std::string_view id);

}  // namespace quillon
