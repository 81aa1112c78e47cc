// SPDX-License-Identifier: MIT
#pragma once

#include <cstdint>
#include <functional>
#include <string_view>

namespace quillon {

// Whether an event of the operating system is about a board of the vendor that came or went. The
// numbers are those of KVUSB_EVENT_... and KVUSB_DEVICE_INTERFACE; the path names the device
// interface, and its vendor id ("VID_4C7E") counts in either case.
bool IsBoardChange(std::uint32_t event, std::uint32_t device_type, std::string_view path);

// A source of hot-plug events. Start() registers for them; they are handed on, on the thread that
// called Start(), with the arguments of IsBoardChange(). Of changes of our boards that wait to be
// handed on together, one is enough: each only says that it is time to look again.
class DeviceNotifier {
 public:
  using Handler =
      std::function<void(std::uint32_t event, std::uint32_t device_type, std::string_view path)>;

  DeviceNotifier() = default;
  DeviceNotifier(const DeviceNotifier&) = delete;
  DeviceNotifier& operator=(const DeviceNotifier&) = delete;
  virtual ~DeviceNotifier() = default;

  // False when the system refused the registration. A source that has nothing to register with is
  // no failure.
  [[nodiscard]] virtual bool Start(Handler handler) = 0;

  // Hands on what has come by now. For the end of something that held the gate for long: what came
  // meanwhile belongs to that time and leads to one detection, not to one for each board of a hub.
  virtual void Deliver() {}
};

}  // namespace quillon
