// SPDX-License-Identifier: MIT
#pragma once

#include "devlink/DeviceTable.h"
#include "devlink/ExchangeGate.h"
#include "kvusb/HidLibrary.h"

namespace quillon {

// All that a page needs to talk to a board: the one library of the process, the boards that it
// found, and the gate that keeps exchanges apart. Made once, when the program starts.
struct BoardLink {
  explicit BoardLink(HidLibrary& the_library) : library(the_library) {}

  HidLibrary& library;
  DeviceTable table;
  ExchangeGate gate;
};

}  // namespace quillon
