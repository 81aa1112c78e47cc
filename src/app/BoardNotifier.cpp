// SPDX-License-Identifier: MIT
#include "app/BoardNotifier.h"

#include "app/LibraryNotifier.h"
#if defined(__linux__)
#include "app/UdevNotifier.h"
#elif defined(_WIN32)
#include "app/WindowsNotifier.h"
#endif

namespace quillon {

std::unique_ptr<DeviceNotifier> MakeBoardNotifier(HidLibrary& library) {
#if defined(__linux__)
  if (!library.SetDeviceChangeHandler(nullptr, nullptr)) return std::make_unique<UdevNotifier>();
#elif defined(_WIN32)
  if (!library.SetDeviceChangeHandler(nullptr, nullptr)) return std::make_unique<WindowsNotifier>();
#endif
  return std::make_unique<LibraryNotifier>(library);
}

}  // namespace quillon
