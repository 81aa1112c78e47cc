// SPDX-License-Identifier: MIT
//
// kvusb-hid: the boards on the machine's USB as a HID library (see kvusb.h). Its hot-plug
// events are the system's, which the program follows by itself.
#include "kvusb/Exports.h"
#include "kvusb/hid/HidBoards.h"

quillon::HidLibrary& quillon::TheLibrary() {
  static HidBoards boards;
  return boards;
}
