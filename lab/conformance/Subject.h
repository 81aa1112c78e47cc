// SPDX-License-Identifier: MIT
#pragma once

#include <chrono>
#include <cstddef>
#include <cstdint>
#include <filesystem>
#include <map>
#include <memory>
#include <mutex>
#include <optional>
#include <string>
#include <variant>
#include <vector>

#include "devlink/SharedObject.h"
#include "kvusb/HidLibrary.h"
#include "kvusb/HidPacket.h"

namespace quillon::conformance {

using Clock = std::chrono::steady_clock;

// How long a library may wait for an answer (kvusb.h), and some time more for a busy machine.
inline constexpr Clock::duration kAnswerLimit = std::chrono::milliseconds(3000);
// What stands in every byte of the table before a detection.
inline constexpr std::byte kTablePattern{0xA5};

// How long a call may take that has nothing to wait for.
inline constexpr Clock::duration kPromptLimit = std::chrono::milliseconds(1000);

// A board that a detection listed.
struct FoundBoard {
  DeviceRecord* record = nullptr;
  std::uint32_t type = 0;
  std::string name;  // for sentences
  std::string key;   // the same after every detection; two boards may have the same
  Problem problem;
  std::vector<HidPacket> questions;

  // Held by another program, or not allowed to this user: no exchange can succeed.
  bool IsBarred() const {
    return problem.kind == KVUSB_PROBLEM_PERMISSION || problem.kind == KVUSB_PROBLEM_IN_USE;
  }
  bool CanBeAsked() const { return !IsBarred() && !questions.empty(); }
};

struct Exchange {
  bool written = false, answered = false;
  HidPacket as_written{};  // the buffer after WriteData
  HidPacket buffer{};      // the buffer after ReadData
  HidPacket before_read{};
  Clock::duration write_time{}, read_time{};

  bool IsInTime() const { return write_time < kAnswerLimit && read_time < kAnswerLimit; }
};

// What a detection did wrong, sorted by promise, and how long it took.
struct DetectionFaults {
  std::vector<std::string> counts, guard, program_bytes;
  Clock::duration took{};
};

struct ChangeEvent {
  std::uint32_t event, device_type;
  std::string path;
};

// The library under examination, with the table of the boards that it found last. Distrusts it:
// what it writes outside its records lands in a margin, and a board that it counts but does not
// write is not listed.
class Subject {
 public:
  // The library, or a sentence that says why it is of no use. `program_folder` is where the host
  // programs are, if the library needs one.
  static std::variant<std::unique_ptr<Subject>, std::string> Load(
      const std::filesystem::path& file, const std::filesystem::path& program_folder);
  ~Subject();
  Subject(const Subject&) = delete;
  Subject& operator=(const Subject&) = delete;

  HidLibrary& Library() { return *library_; }
  // In a process of its own, where only HidLibrary reaches it.
  bool IsHosted() const { return !object_; }
  bool HasDescribe() const { return describe_ != nullptr; }
  // Without the function not even taking the handler back succeeds.
  bool HasSetHandler() { return library_->SetDeviceChangeHandler(nullptr, nullptr); }

  // The functions that have thrown so far, against their promise, each with the text of its first
  // exception. The other methods take an exception for a failure.
  using Thrown = std::map<std::string, std::string>;
  const Thrown& Exceptions() const { return *thrown_; }

  // Looks for boards of all types in an empty table. The boards and records of before are gone.
  DetectionFaults Detect();
  // Closes the boards of the table; their records stay where they are.
  bool Close();
  // A clean start for a check: closed and detected again.
  void Refresh();

  std::vector<FoundBoard>& Boards() { return boards_; }
  std::vector<std::string> Keys() const;  // sorted

  // Writes and then reads, even if the write failed, as the program does. Byte 64 is changed in
  // between, so that a library which copies it is found out.
  Exchange Ask(const FoundBoard& board, const HidPacket& question);
  std::int32_t Write(const FoundBoard& board, HidPacket& packet, Clock::duration& took);
  bool Read(const FoundBoard& board, HidPacket& packet, Clock::duration& took);

  // Events that came since the handler was set.
  std::vector<ChangeEvent> Events();
  bool ListenForEvents(bool listen);

  // Calls DescribeProblem directly, where there is one: HidLibrary would tidy its text.
  std::int32_t DescribeInto(const DeviceRecord* record, char* text, std::uint32_t size) const;

 private:
  Subject(std::unique_ptr<HidLibrary> library, const std::filesystem::path& file,
          std::shared_ptr<Thrown> thrown);

  std::size_t DetectType(std::size_t base, std::uint32_t type, DetectionFaults& faults);
  void Describe(std::size_t first, std::size_t last, std::uint32_t type);
  static void KVUSB_CALL OnChange(std::uint32_t event, std::uint32_t type, const char* path,
                                  void* context);

  std::mutex mutex_;
  std::vector<ChangeEvent> events_;
  std::vector<DeviceRecord> table_;
  std::vector<FoundBoard> boards_;
  std::shared_ptr<Thrown> thrown_;
  std::optional<SharedObject> object_;  // for what HidLibrary does not show
  DescribeProblemFunction describe_ = nullptr;
  std::unique_ptr<HidLibrary> library_;
};

// What a board of the type runs, in a word.
std::string TypeName(std::uint32_t type);
std::string HexWord(unsigned value, int digits);

}  // namespace quillon::conformance
