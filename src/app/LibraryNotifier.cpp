// SPDX-License-Identifier: MIT
#include "app/LibraryNotifier.h"

#include <QCoreApplication>
#include <string>

namespace quillon {

LibraryNotifier::~LibraryNotifier() { library_.SetDeviceChangeHandler(nullptr, nullptr); }

bool LibraryNotifier::Start(Handler handler) {
  handler_ = std::move(handler);
  library_.SetDeviceChangeHandler(&LibraryNotifier::OnEvent, this);
  return true;
}

void LibraryNotifier::Deliver() { QCoreApplication::sendPostedEvents(this, QEvent::MetaCall); }

// The library may call from any thread and in the middle of an exchange, so an event only goes on
// the queue here.
void KVUSB_CALL LibraryNotifier::OnEvent(std::uint32_t event, std::uint32_t device_type,
                                         const char* path, void* context) {
  auto* const self = static_cast<LibraryNotifier*>(context);
  std::string copy = path != nullptr ? path : "";
  QMetaObject::invokeMethod(
      self,
      [self, event, device_type, copy = std::move(copy)] {
        self->handler_(event, device_type, copy);
      },
      Qt::QueuedConnection);
}

}  // namespace quillon
