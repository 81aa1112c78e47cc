// SPDX-License-Identifier: MIT
#pragma once

#include <cstdint>
#include <functional>
#include <string_view>

namespace quillon {

// Whether an event of the operating system says that one of the vendor's boards came or went. The
// numbers are those of KVUSB_EVENT_... and KVUSB_DEVICE_INTERFACE. The path names the device
// interface; its vendor id ("VID_4C7E") may be in upper or lower case.
bool IsBoardChange(std::uint32_t event, std::uint32_t device_type, std::string_view path);

// A source of hot-plug events. Start() registers for them. The handler is called on the thread that
// called Start(), with the arguments of IsBoardChange(). Changes of our boards that wait at the
// same time may be handed on as one: each only says that it is time to look again.
class DeviceNotifier {
 public:
  using Handler =
      std::function<void(std::uint32_t event, std::uint32_t device_type, std::string_view path)>;

  DeviceNotifier() = default;
  DeviceNotifier(const DeviceNotifier&) = delete;
  DeviceNotifier& operator=(const DeviceNotifier&) = delete;
  virtual ~DeviceNotifier() = default;

  // False when the system refused the registration; true for a source that has nothing to register
  // with.
  [[nodiscard]] virtual bool Start(Handler handler) = 0;

  // Hands on what has come by now. A detection calls this after its wait, while it holds the gate:
  // what came meanwhile leads to one more detection, not to one for each board of a hub.
  virtual void Deliver() {}
};

}  // namespace quillon
