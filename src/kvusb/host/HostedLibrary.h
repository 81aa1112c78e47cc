// SPDX-License-Identifier: MIT
#pragma once

#include <chrono>
#include <condition_variable>
#include <cstdint>
#include <filesystem>
#include <functional>
#include <memory>
#include <mutex>
#include <optional>
#include <string>
#include <thread>
#include <variant>
#include <vector>

#include "kvusb/HidLibrary.h"
#include "kvusb/host/HostProcess.h"
#include "kvusb/host/Message.h"

namespace quillon::host {

struct HostedOptions {
  std::filesystem::path program;  // the host
  std::filesystem::path library;
  // Called once inside a call when the host has ended or was ended.
  std::function<void()> when_ended = {};
  // How long a call may take (kvusb.h), and how much longer a host may be silent. A call that waits
  // for nothing should take milliseconds; a machine may be busy.
  std::chrono::milliseconds prompt_limit{1000};
  std::chrono::milliseconds answer_limit{2000};
  std::chrono::milliseconds erase_limit{10000};
  std::chrono::milliseconds patience{2000};
  std::chrono::milliseconds start_limit{10000};
};

// A HID library that runs in a process of its own, the host: one of another width than the
// program's, or one that is not trusted not to crash.
//
// When the host ends, or is silent for too long and so is ended, calls fail and
// DescribeProblem(nullptr) says what happened. The boards of that host are lost. CloseDevices ends
// their table, as always; the first DetectHID after it starts another host.
class HostedLibrary final : public HidLibrary {
 public:
  // Starts the host, which loads the library. Or returns a sentence that says why it cannot.
  static std::variant<std::unique_ptr<HidLibrary>, std::string> Start(HostedOptions options);
  ~HostedLibrary() override;

  std::int32_t DetectHID(std::uint32_t& count, std::span<DeviceRecord> free,
                         std::uint32_t type) override;
  std::int32_t WriteData(DeviceRecord& record, PacketSpan packet) override;
  std::int32_t ReadData(DeviceRecord& record, PacketSpan packet) override;
  // In one message to the host.
  std::int32_t Exchange(DeviceRecord& record, PacketSpan packet, ReadAfter after) override;
  std::int32_t CloseDevices(std::span<DeviceRecord> records) override;
  // Events come on a thread of their own. Those that the library told of during a call come before
  // that returns.
  bool SetDeviceChangeHandler(DeviceChangeHandler handler, void* context) override;
  Problem DescribeProblem(const DeviceRecord* record) override;

 private:
  using Milliseconds = std::chrono::milliseconds;

  explicit HostedLibrary(HostedOptions options) : options_(std::move(options)) {}

  std::optional<std::string> StartProcess();
  bool IsRunning();
  void EndProcess(const std::string& what_happened);
  void StopProcess();
  bool Call(const char* function, Milliseconds may_take, std::span<DeviceRecord> back = {});
  bool IsAnswer(const Head& asked, std::span<const DeviceRecord> back) const;
  std::int32_t Transfer(Function function, const char* name, std::uint32_t number,
                        DeviceRecord& record, PacketSpan packet, Milliseconds may_take);
  Milliseconds ReadLimit(const DeviceRecord& record) const;

  std::uint32_t PlaceOf(const DeviceRecord* record) const;
  bool IsLost(const DeviceRecord& record) const;

  bool Listen(bool listen);
  void HandOnEvents(Pipe& events);
  void AwaitEvents(std::uint32_t sent);

  HostedOptions options_;
  std::unique_ptr<HostProcess> process_;
  std::unique_ptr<Message> message_ = std::make_unique<Message>();
  std::uint32_t serial_ = 0;
  std::string problem_;          // what ended the host
  bool has_dead_table_ = false;  // the host has ended, and the program has not closed its boards
  const DeviceRecord* table_ = nullptr;  // what the mirror's first place is for
  std::vector<bool> lost_ = std::vector<bool>(kTablePlaces);         // records of a former host
  std::vector<bool> erasing_ = std::vector<bool>(kTablePlaces + 1);  // by what was written last

  // Recursive, because a handler may set another one.
  std::recursive_mutex handler_mutex_;
  DeviceChangeHandler handler_ = nullptr;
  void* handler_context_ = nullptr;
  std::thread listener_;
  std::mutex events_mutex_;
  std::condition_variable event_handed_on_;
  std::uint32_t events_handed_on_ = 0;
  bool events_ended_ = false;
};

}  // namespace quillon::host
