// SPDX-License-Identifier: MIT
#pragma once

#include <QObject>
#include <cstdint>
#include <mutex>
#include <optional>
#include <string>

#include "devlink/DeviceNotifier.h"
#include "kvusb/HidLibrary.h"

namespace quillon {

// Hot-plug events from the HID library itself, if it has the optional function for them. A library
// without it has no events to give; that is no failure.
//
// While a change of our boards waits for the event loop, further ones are dropped: they would lead
// to the same detection. So a library that calls without pause neither fills the memory nor holds
// up the user's clicks.
class LibraryNotifier : public QObject, public DeviceNotifier {
  Q_OBJECT

 public:
  // The library outlives the object.
  explicit LibraryNotifier(HidLibrary& library) : library_(library) {}
  ~LibraryNotifier() override;

  bool Start(Handler handler) override;
  void Deliver() override;

 private:
  static void KVUSB_CALL OnEvent(std::uint32_t event, std::uint32_t device_type, const char* path,
                                 void* context);

  struct Event {
    std::uint32_t event;
    std::uint32_t device_type;
    std::string path;
  };

  HidLibrary& library_;
  Handler handler_;
  std::mutex mutex_;
  std::optional<Event> waiting_;  // written on any thread
};

}  // namespace quillon
