// SPDX-License-Identifier: MIT
#pragma once

#include <memory>

#include "devlink/DeviceNotifier.h"
#include "kvusb/HidLibrary.h"

namespace quillon {

// The source of hot-plug events for this library's boards: the library's own events if it has the
// optional function for them, else the system's. The library outlives the notifier.
std::unique_ptr<DeviceNotifier> MakeBoardNotifier(HidLibrary& library);

}  // namespace quillon
