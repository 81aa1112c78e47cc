// SPDX-License-Identifier: MIT
#pragma once

#include <umockdev.h>

#include <cstdint>
#include <functional>
#include <mutex>
#include <span>
#include <string>
#include <vector>

namespace quillon::testing {

// umockdev's testbed, and what to do after each event that it sends.
struct Testbed {
  // Adds the device that the text describes; its event is sent.
  void Add(const std::string& device) const;
  // Sends the event, then forgets the device. The ones below it have to go first.
  void Remove(const std::string& path) const;
  void Tell(const std::string& path, const char* action) const;

  UMockdevTestbed* self;
  std::function<void()> after_event;
  bool one_by_one = false;  // whether a report waits until the one before it was fetched
};

// What a USB device says of itself.
struct UsbFace {
  std::uint16_t vendor = 0, product = 0, release = 0;
  std::string manufacturer, product_text, serial;
};

// A piece of the emulated /sys, as umockdev takes it.
std::string UsbDeviceText(const std::string& path, const UsbFace& face, int number);

// One HID interface in the emulated /sys with its hidraw node.
class EmulatedHid {
 public:
  // A report from the host, with its report number. Called on umockdev's thread. Returns an errno
  // for a report that cannot be sent, else 0.
  using Taken = std::function<int(std::span<const std::uint8_t> report)>;

  // `usb` is the path of the USB device, `number` is the interface's, `hidraw` one that was never
  // used in this testbed.
  EmulatedHid(const Testbed& testbed, const std::string& usb, const UsbFace& face, int number,
              int hidraw, std::vector<std::uint8_t> report_descriptor, Taken taken);
  ~EmulatedHid();
  EmulatedHid(const EmulatedHid&) = delete;
  EmulatedHid& operator=(const EmulatedHid&) = delete;

  const std::string& Device() const { return device_; }
  // The file that umockdev opens in the place of Device().
  std::string Terminal() const;

  void Send(std::span<const std::uint8_t> report) const;
  // Whether the host has fetched all that was sent.
  bool IsFetched() const;
  // What a host sees at once when the cable is pulled: readers end.
  void HangUp();

 private:
  void AwaitFetched() const;

  // What umockdev's thread uses. It is apart from the object because a client may keep its file
  // open after the interface has gone.
  struct Link {
    std::mutex mutex;
    EmulatedHid* self;
  };

  static gboolean OnIoctl(UMockdevIoctlBase* base, UMockdevIoctlClient* client, gpointer link);
  static gboolean OnWrite(UMockdevIoctlBase* base, UMockdevIoctlClient* client, gpointer link);

  const Testbed& testbed_;
  UMockdevIoctlBase* handler_;
  Link* link_;  // the handler's
  std::vector<std::uint8_t> report_descriptor_;
  Taken taken_;
  std::string device_, interface_path_, hid_path_, node_path_;
  int pty_ = -1;
  bool hung_up_ = false;
};

}  // namespace quillon::testing
