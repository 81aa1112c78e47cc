// SPDX-License-Identifier: MIT
#pragma once

#include <chrono>
#include <filesystem>
#include <memory>
#include <string>
#include <variant>

#include "kvusb/host/Message.h"

namespace quillon::host {

// With this the host ends on Windows when the library has crashed.
inline constexpr unsigned kCrashedCode = 70;

// The process of a host, with the program's ends of the pipes to it. It never outlives the program,
// nor, on Linux, the thread that started it.
class HostProcess {
 public:
  using Clock = std::chrono::steady_clock;

  enum class Ending { kLeft, kCrashed, kKilled };

  HostProcess() = default;
  HostProcess(const HostProcess&) = delete;
  HostProcess& operator=(const HostProcess&) = delete;
  virtual ~HostProcess() = default;

  // Reading and writing take no longer than until the deadline.
  virtual Pipe& Calls() = 0;
  virtual void SetDeadline(Clock::time_point deadline) = 0;
  // Whether the deadline was what ended the last read or write.
  virtual bool WasLate() const = 0;

  // For one thread: reading waits for ever, that is until the process ends.
  virtual Pipe& Events() = 0;

  // Closes the pipe of calls and gives the process until the deadline to end by itself.
  virtual void Leave(Clock::time_point deadline) = 0;
  // Ends the process, if it has not ended yet. Afterwards only the destructor may be called.
  virtual Ending End() = 0;
};

// Starts the host program on a library, or says, as the end of a sentence, why it cannot.
std::variant<std::unique_ptr<HostProcess>, std::string> StartHost(
    const std::filesystem::path& program, const std::filesystem::path& library);

}  // namespace quillon::host
