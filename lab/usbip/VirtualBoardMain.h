// SPDX-License-Identifier: MIT
#pragma once

#include <ostream>
#include <span>
#include <string>

#include "usbip/Vhci.h"

namespace quillon::usbip {

enum VirtualBoardStatus : int {
  kBoardsDone = 0,
  kBoardsBad = 1,    // the rig, the kernel or the rights
  kBoardsUsage = 2,  // the command line
};

// The program quillon-virtual-board (--help tells what it does). Runs until `stop` can be read.
int VirtualBoardMain(std::span<const std::string> arguments, const Vhci& vhci, int stop,
                     std::ostream& out, std::ostream& err);

}  // namespace quillon::usbip
