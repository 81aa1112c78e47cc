// SPDX-License-Identifier: MIT
#include "app/BoardNotifier.h"

#include "app/LibraryNotifier.h"
#ifdef __linux__
#include "app/UdevNotifier.h"
#endif

namespace quillon {

std::unique_ptr<DeviceNotifier> MakeBoardNotifier(HidLibrary& library) {
#ifdef __linux__
  if (!library.SetDeviceChangeHandler(nullptr, nullptr)) return std::make_unique<UdevNotifier>();
#endif
  return std::make_unique<LibraryNotifier>(library);
}

}  // namespace quillon
