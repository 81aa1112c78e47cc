// SPDX-License-Identifier: MIT
//
// libkvusb-hid: the boards on the machine's USB as a HID access library (see kvusb.h), over hidapi.
// Its hot-plug events are the system's, which the program follows by itself.
#include "kvusb/hid/HidBoards.h"

quillon::AccessLibrary& quillon::TheLibrary() {
  static HidBoards boards;
  return boards;
}
