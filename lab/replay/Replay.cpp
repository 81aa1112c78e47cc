// SPDX-License-Identifier: MIT
#include "replay/Replay.h"

#include <algorithm>
#include <array>
#include <cstdio>
#include <span>
#include <string_view>
#include <utility>
#include <variant>

#include "storage/ReadFile.h"

namespace quillon {
namespace {

using Call = TraceEntry::Call;

// A flash update of a whole board takes half a MiB, so this is a session of days.
constexpr std::size_t kMostBytes = std::size_t{64} << 20;

bool IsCrowded(const TraceEntry& entry) { return entry.boards.size() > KVUSB_MOST_BOARDS; }

// The player's sentences stand on lines of their own for a terminal; a window has one line.
std::string OnOneLine(const std::string& text) {
  std::string out;
  for (const char c : text) {
    const bool space = c == ' ' || c == '\n';
    if (!space || (!out.empty() && out.back() != ' ')) out += space ? ' ' : c;
  }
  return out;
}

// A program that ended in the middle of a line still wrote the calls before it.
auto ParseWholeLines(std::string_view text) {
  auto parsed = ParseTrace(text);
  const auto end = text.rfind('\n');
  const bool cut = end != std::string_view::npos && end + 1 < text.size();
  if (cut && std::holds_alternative<std::string>(parsed)) return ParseTrace(text.substr(0, end));
  return parsed;
}

}  // namespace

Replay::Replay(const std::filesystem::path& trace) : file_(trace.string()) {
  if (file_.empty()) {
    unplayable_ = "QUILLON_REPLAY names no trace to play.";
    return;
  }
  const auto content = ReadFile(trace, kMostBytes);
  if (const auto* const problem = std::get_if<FileProblem>(&content)) {
    unplayable_ = problem->Sentence("The trace " + file_);
    return;
  }
  const auto& text = std::get<std::string>(content);
  auto parsed = ParseWholeLines(text);
  if (const auto* wrong = std::get_if<std::string>(&parsed)) {
    unplayable_ = "The trace " + file_ + " cannot be played. " + *wrong;
  } else if (text.empty()) {
    unplayable_ = "The trace " + file_ + " is empty.";
  } else {
    auto entries = std::get<std::vector<TraceEntry>>(std::move(parsed));
    if (std::any_of(entries.begin(), entries.end(), IsCrowded)) {
      unplayable_ = "The trace " + file_ + " has more boards than a bus can hold.";
      return;
    }
    calls_ = entries.size();
    player_.Play(std::move(entries));
  }
}

std::int32_t Replay::DetectHID(std::uint32_t& count, std::span<DeviceRecord> free,
                               std::uint32_t type) {
  if (!unplayable_.empty()) return 0;
  const TraceEntry* entry = player_.Detect(free.data(), type);
  if (entry == nullptr) return 0;
  if (entry->result != 0) {
    count = static_cast<std::uint32_t>(std::min(entry->boards.size(), free.size()));
    CopyBoards(*entry, free);
  }
  Advance();
  return entry->result;
}

std::int32_t Replay::WriteData(DeviceRecord& record, PacketSpan packet) {
  if (!unplayable_.empty()) return KVUSB_WRITE_FAILED;
  const TraceEntry* entry = player_.Write(record, packet);
  if (entry == nullptr) return KVUSB_WRITE_FAILED;
  Advance();
  return entry->result;
}

std::int32_t Replay::ReadData(DeviceRecord& record, PacketSpan packet) {
  if (!unplayable_.empty()) return KVUSB_READ_FAILED;
  const TraceEntry* entry = player_.Read(record);
  if (entry == nullptr) return KVUSB_READ_FAILED;
  if (entry->HasPacket())
    std::copy_n(entry->packet.begin(), KVUSB_PACKET_BYTES - 1, packet.begin());
  Advance();
  return entry->result;
}

std::int32_t Replay::CloseDevices(std::span<DeviceRecord> records) {
  if (!unplayable_.empty()) return records.empty() ? 1 : 0;
  const TraceEntry* entry = player_.Close(static_cast<std::uint32_t>(records.size()));
  if (entry == nullptr) return 1;
  Advance();
  return entry->result;
}

// A program may detect its first boards before it sets a handler.
bool Replay::SetDeviceChangeHandler(DeviceChangeHandler handler, void* context) {
  handler_ = handler;
  context_ = context;
  ReportRedetection();
  return true;
}

void Replay::Advance() {
  const TraceEntry* closing = player_.Coming(0);
  const TraceEntry* detection = player_.Coming(1);
  redetection_due_ = closing != nullptr && closing->call == Call::kClose && detection != nullptr &&
                     detection->call == Call::kDetect;
  ReportRedetection();
}

// In the form of a real path. A trace does not tell which board it is about.
void Replay::ReportRedetection() {
  const TraceEntry* detection = player_.Coming(1);
  if (handler_ == nullptr || !redetection_due_ || detection == nullptr) return;
  redetection_due_ = false;
  const unsigned product = detection->boards.empty() ? 0U : detection->boards[0].product_id;
  std::array<char, 64> path{};
  std::snprintf(path.data(), path.size(), R"(\\?\HID#Vid_4C7E&Pid_%04x#replay)", product);
  handler_(KVUSB_EVENT_ARRIVAL, KVUSB_DEVICE_INTERFACE, path.data(), context_);
}

Problem Replay::DescribeProblem(const DeviceRecord* record) {
  std::string sentence = record == nullptr ? Sentence() : std::string();
  return {sentence.empty() ? KVUSB_PROBLEM_NONE : KVUSB_PROBLEM_OTHER, std::move(sentence)};
}

std::string Replay::Sentence() const {
  if (!unplayable_.empty()) return unplayable_;
  if (!player_.Difference().empty())
    return "The program left the trace " + file_ + ". " + OnOneLine(player_.Difference());
  if (player_.Coming() == nullptr)
    return "The trace " + file_ + " has ended after " + std::to_string(calls_) + " calls.";
  return {};
}

}  // namespace quillon
