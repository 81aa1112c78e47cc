// SPDX-License-Identifier: MIT
#pragma once

#include <QObject>
#include <cstdint>
#include <string>

#include "devlink/DeviceNotifier.h"
#include "devlink/HidLibrary.h"

namespace quillon {

// Hot-plug events from the HID library itself, if it has the optional function for them. A library
// without it has no events to give; that is no failure.
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
  void HandOn(std::uint32_t event, std::uint32_t device_type, const std::string& path) const;

  HidLibrary& library_;
  Handler handler_;
};

}  // namespace quillon
