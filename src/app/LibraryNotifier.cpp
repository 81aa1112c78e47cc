// SPDX-License-Identifier: MIT
#include "app/LibraryNotifier.h"

#include <exception>
#include <utility>

namespace quillon {

LibraryNotifier::~LibraryNotifier() { library_.SetDeviceChangeHandler(nullptr, nullptr); }

bool LibraryNotifier::Start(Handler handler) {
  handler_ = std::move(handler);
  library_.SetDeviceChangeHandler(&LibraryNotifier::OnEvent, this);
  return true;
}

// Called from the event loop, which must not see an exception.
void LibraryNotifier::Deliver() try {
  std::optional<Event> event;
  {
    const std::scoped_lock lock(mutex_);
    event = std::exchange(waiting_, std::nullopt);
  }
  if (event) handler_(event->event, event->device_type, event->path);
} catch (const std::exception&) {
}

// The library may call from any thread and in the middle of an exchange, so an event is only noted
// here. Nothing may be thrown into it; an event for which there is no memory is lost.
void KVUSB_CALL LibraryNotifier::OnEvent(std::uint32_t event, std::uint32_t device_type,
                                         const char* path, void* context) try {
  const std::string_view name = path != nullptr ? path : "";
  if (!IsBoardChange(event, device_type, name)) return;
  auto* const self = static_cast<LibraryNotifier*>(context);
  const std::scoped_lock lock(self->mutex_);
  if (self->waiting_) return;
  self->waiting_ = Event{event, device_type, std::string(name)};
  QMetaObject::invokeMethod(
      self, [self] { self->Deliver(); }, Qt::QueuedConnection);
} catch (const std::exception&) {
}

}  // namespace quillon
