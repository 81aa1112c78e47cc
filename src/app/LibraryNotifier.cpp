// SPDX-License-Identifier: MIT
#include "app/LibraryNotifier.h"

#include <QCoreApplication>
#include <exception>
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
// the queue here. Nothing may be thrown into it; an event for which there is no memory is lost.
void KVUSB_CALL LibraryNotifier::OnEvent(std::uint32_t event, std::uint32_t device_type,
                                         const char* path, void* context) try {
  auto* const self = static_cast<LibraryNotifier*>(context);
  std::string copy = path != nullptr ? path : "";
  QMetaObject::invokeMethod(
      self,
      [self, event, device_type, copy = std::move(copy)] {
        self->HandOn(event, device_type, copy);
      },
      Qt::QueuedConnection);
} catch (const std::exception&) {
}

// Called from the event loop, which cannot take an exception either.
void LibraryNotifier::HandOn(std::uint32_t event, std::uint32_t device_type,
                             const std::string& path) const try {
  handler_(event, device_type, path);
} catch (const std::exception&) {
}

}  // namespace quillon
