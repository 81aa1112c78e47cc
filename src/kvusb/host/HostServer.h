// SPDX-License-Identifier: MIT
#pragma once

#include <atomic>
#include <cstdint>
#include <memory>
#include <mutex>
#include <vector>

#include "kvusb/HidLibrary.h"
#include "kvusb/host/Message.h"

namespace quillon::host {

// Calls a HID library for a program that sends its calls through a pipe.
class HostServer {
 public:
  // All three outlive the object.
  HostServer(HidLibrary& library, Pipe& calls, Pipe& events);
  ~HostServer();
  HostServer(const HostServer&) = delete;
  HostServer& operator=(const HostServer&) = delete;

  // Answers calls until the program ends or sends what is no call.
  void Serve();

 private:
  bool Answer();
  void Detect();
  void Close();
  void Listen();
  void Describe();
  bool Transfer(Function function);

  std::span<DeviceRecord> Mirrored();
  void Merge();
  void PutMirror(std::uint32_t first, std::size_t records);
  static void KVUSB_CALL OnEvent(std::uint32_t event, std::uint32_t device_type, const char* path,
                                 void* context);

  HidLibrary& library_;
  Pipe& calls_;
  Pipe& events_;
  std::vector<DeviceRecord> mirror_{kPlaces};
  std::vector<DeviceRecord> known_{kPlaces};  // the records as the program has them
  std::unique_ptr<Message> message_ = std::make_unique<Message>();
  std::mutex mutex_;
  std::atomic<std::uint32_t> events_sent_ = 0;
};

}  // namespace quillon::host
