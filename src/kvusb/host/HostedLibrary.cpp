// SPDX-License-Identifier: MIT
#include "kvusb/host/HostedLibrary.h"

#include <algorithm>
#include <utility>

namespace quillon::host {
namespace {

using Clock = HostProcess::Clock;

std::string TextOf(Message& message) {
  const auto text = message.Rest();
  return {text.begin(), text.end()};
}

const char* Verb(HostProcess::Ending ending) {
  return ending == HostProcess::Ending::kCrashed ? " crashed in " : " ended its process in ";
}

}  // namespace

std::variant<std::unique_ptr<HidLibrary>, std::string> HostedLibrary::Start(HostedOptions options) {
  std::unique_ptr<HostedLibrary> library(new HostedLibrary(std::move(options)));
  if (auto problem = library->StartProcess()) return std::move(*problem);
  return library;
}

// Nobody wants to hear any more that the host has ended.
HostedLibrary::~HostedLibrary() {
  options_.when_ended = {};
  HostedLibrary::SetDeviceChangeHandler(nullptr, nullptr);
  if (process_) process_->Leave(Clock::now() + options_.patience);
  StopProcess();
}

std::optional<std::string> HostedLibrary::StartProcess() {
  const std::string program = "The program " + options_.program.string();
  auto started = StartHost(options_.program, options_.library);
  if (const auto* const reason = std::get_if<std::string>(&started))
    return program + " cannot be started: " + *reason + ".";
  process_ = std::get<std::unique_ptr<HostProcess>>(std::move(started));
  process_->SetDeadline(Clock::now() + options_.start_limit);
  std::optional<std::string> problem;
  const Head& hello = message_->head;
  if (!Receive(process_->Calls(), *message_)) {
    problem = "The HID library " + options_.library.string() +
              (process_->WasLate() ? " did not load in time." : " ended its process at its start.");
  } else if (hello.function != Function::kHello || hello.number != kProtocol) {
    problem = program + " is of another version than this one.";
  } else if (hello.result != 0) {
    problem = TextOf(*message_);
  }
  if (problem) {
    StopProcess();
    return problem;
  }
  problem_.clear();
  if (handler_ != nullptr) Listen(true);
  return std::nullopt;
}

// Whether there is a host that can be asked; at a detection one is started if need be.
bool HostedLibrary::IsRunning() {
  if (process_ || has_dead_table_) return process_ != nullptr;
  if (auto problem = StartProcess()) {
    problem_ = *std::move(problem);
    has_dead_table_ = true;
  }
  return process_ != nullptr;
}

void HostedLibrary::StopProcess() {
  if (!process_) return;
  process_->End();
  if (listener_.joinable()) listener_.join();
  process_.reset();
}

void HostedLibrary::EndProcess(const std::string& what_happened) {
  StopProcess();
  problem_ = "The HID library " + options_.library.string() + what_happened +
             ". \"Refresh\" starts it again.";
  has_dead_table_ = true;
  std::fill(lost_.begin(), lost_.end(), true);
  if (options_.when_ended) options_.when_ended();
}

// Sends the message and waits for its answer, which then stands in its place; `back` takes the
// records. False when there is none: then the host is no more.
bool HostedLibrary::Call(const char* function, Milliseconds may_take,
                         std::span<DeviceRecord> back) {
  message_->head.serial = ++serial_;
  const Head asked = message_->head;
  process_->SetDeadline(Clock::now() + may_take + options_.patience);
  const bool came = Send(process_->Calls(), *message_) && Receive(process_->Calls(), *message_);
  if (came && IsAnswer(asked, back)) {
    for (std::uint32_t i = 0; i < message_->head.records; ++i) message_->CopyRecord(i, back[i]);
    AwaitEvents(message_->head.events);
    return true;
  }
  if (came)
    EndProcess(std::string(" spoilt its process in ") + function);
  else if (process_->WasLate())
    EndProcess(std::string(" did not come back from ") + function + " and was stopped");
  else
    EndProcess(Verb(process_->End()) + std::string(function));
  return false;
}

// A library may write over the memory of its host.
bool HostedLibrary::IsAnswer(const Head& asked, std::span<const DeviceRecord> back) const {
  const Head& head = message_->head;
  const bool holds_packet = head.size == sizeof(DeviceRecord) + KVUSB_PACKET_BYTES;
  const bool is_transfer = asked.function == Function::kWrite ||
                           asked.function == Function::kRead ||
                           asked.function == Function::kExchange;
  return head.serial == asked.serial && head.function == asked.function &&
         (head.records == 0 || head.first == asked.first) && head.records <= back.size() &&
         (!is_transfer || (head.records == 1 && holds_packet));
}

// A library that a program talks to has one table. Whatever stands elsewhere has a place for the
// time of a call.
std::uint32_t HostedLibrary::PlaceOf(const DeviceRecord* record) const {
  const auto address = reinterpret_cast<std::uintptr_t>(record);
  const auto table = reinterpret_cast<std::uintptr_t>(table_);
  if (table_ == nullptr || address < table) return kTablePlaces;
  const std::uintptr_t place = (address - table) / sizeof(DeviceRecord);
  return static_cast<std::uint32_t>(std::min<std::uintptr_t>(place, kTablePlaces));
}

// A library may keep pointers of its own process in its records, so another process never sees
// them.
bool HostedLibrary::IsLost(const DeviceRecord& record) const {
  const std::uint32_t place = PlaceOf(&record);
  return place < kTablePlaces && lost_[place];
}

std::int32_t HostedLibrary::DetectHID(std::uint32_t& count, std::span<DeviceRecord> free,
                                      std::uint32_t type) {
  if (!IsRunning() || free.empty()) return 0;
  if (PlaceOf(free.data()) == kTablePlaces) {
    table_ = free.data();
    std::fill(lost_.begin(), lost_.end(), false);
  }
  const std::uint32_t first = PlaceOf(free.data());
  const auto room = free.first(std::min<std::size_t>(free.size(), kTablePlaces - first));
  message_->Begin(Function::kDetect);
  message_->Put(first, room.first(std::min<std::size_t>(room.size(), KVUSB_MOST_BOARDS)));
  message_->head.number = type;
  message_->head.count = count;
  if (!Call("DetectHID", options_.prompt_limit, room)) return 0;
  std::fill_n(lost_.begin() + first, message_->head.records, false);
  count = message_->head.count;
  return message_->head.result;
}

std::int32_t HostedLibrary::Transfer(Function function, const char* name, std::uint32_t number,
                                     DeviceRecord& record, PacketSpan packet,
                                     Milliseconds may_take) {
  static_assert(KVUSB_WRITE_FAILED == KVUSB_READ_FAILED);
  if (!process_ || IsLost(record)) return KVUSB_READ_FAILED;
  const std::uint32_t place = PlaceOf(&record);
  message_->Begin(function);
  message_->Put(place, {&record, 1});
  message_->Put(packet);
  message_->head.number = number;
  if (!Call(name, may_take, {&record, 1})) return KVUSB_READ_FAILED;
  const auto answer = message_->Rest();
  std::copy(answer.begin(), answer.end(), packet.begin());
  return message_->head.result;
}

HostedLibrary::Milliseconds HostedLibrary::ReadLimit(const DeviceRecord& record) const {
  return erasing_[PlaceOf(&record)] ? options_.erase_limit : options_.answer_limit;
}

std::int32_t HostedLibrary::WriteData(DeviceRecord& record, PacketSpan packet) {
  erasing_[PlaceOf(&record)] = IsErase(packet);
  return Transfer(Function::kWrite, "WriteData", 0, record, packet, options_.prompt_limit);
}

std::int32_t HostedLibrary::ReadData(DeviceRecord& record, PacketSpan packet) {
  return Transfer(Function::kRead, "ReadData", 0, record, packet, ReadLimit(record));
}

std::int32_t HostedLibrary::Exchange(DeviceRecord& record, PacketSpan packet, ReadAfter after) {
  erasing_[PlaceOf(&record)] = IsErase(packet);
  return Transfer(Function::kExchange, "WriteData or ReadData", static_cast<std::uint32_t>(after),
                  record, packet, options_.prompt_limit + ReadLimit(record));
}

// Where the host has ended, its boards are closed.
std::int32_t HostedLibrary::CloseDevices(std::span<DeviceRecord> records) {
  has_dead_table_ = false;
  if (!process_) return 1;
  const std::uint32_t first = PlaceOf(records.data());
  const auto lost = std::find_if(records.begin(), records.end(),
                                 [&](const DeviceRecord& record) { return IsLost(record); });
  const std::size_t known = static_cast<std::size_t>(lost - records.begin());
  const std::size_t room = first < kTablePlaces ? kTablePlaces - first : kStrangerPlaces;
  const auto closed = records.first(std::min(known, room));
  message_->Begin(Function::kClose);
  message_->Put(first, closed);
  if (Call("CloseDevices", options_.prompt_limit, closed)) return message_->head.result;
  has_dead_table_ = false;
  return 0;
}

Problem HostedLibrary::DescribeProblem(const DeviceRecord* record) {
  if (process_ && (record == nullptr || !IsLost(*record))) {
    message_->Begin(Function::kDescribe);
    if (record != nullptr) message_->Put(PlaceOf(record), {record, 1});
    if (Call("DescribeProblem", options_.prompt_limit))
      return {message_->head.result, TextOf(*message_)};
  }
  if (record != nullptr || problem_.empty()) return {};
  return {KVUSB_PROBLEM_OTHER, problem_};
}

bool HostedLibrary::SetDeviceChangeHandler(DeviceChangeHandler handler, void* context) {
  const auto set = [&] {
    const std::scoped_lock lock(handler_mutex_);
    handler_ = handler;
    handler_context_ = context;
  };
  // A new handler hears what the library says to it at once, and the former one its farewell.
  const bool from_handler = std::this_thread::get_id() == listener_.get_id();
  if (handler != nullptr || from_handler) set();
  // Taking a handler back fails only where the library never has any events.
  const bool done = from_handler || (process_ ? Listen(handler != nullptr) : handler == nullptr);
  if (handler == nullptr) set();
  return done;
}

// The events of one host, from the first handler on.
bool HostedLibrary::Listen(bool listen) {
  if (listen && !listener_.joinable()) {
    events_handed_on_ = 0;
    events_ended_ = false;
    listener_ = std::thread([this, &events = process_->Events()] { HandOnEvents(events); });
  }
  message_->Begin(Function::kListen);
  message_->head.number = listen ? 1 : 0;
  return Call("SetDeviceChangeHandler", options_.prompt_limit) && message_->head.result != 0;
}

void HostedLibrary::HandOnEvents(Pipe& events) {
  EventMessage event;
  while (ReceiveEvent(events, event)) {
    {
      const std::scoped_lock lock(handler_mutex_);
      if (handler_ != nullptr)
        handler_(event.event, event.device_type, event.path.data(), handler_context_);
    }
    const std::scoped_lock lock(events_mutex_);
    ++events_handed_on_;
    event_handed_on_.notify_all();
  }
  const std::scoped_lock lock(events_mutex_);
  events_ended_ = true;
  event_handed_on_.notify_all();
}

// A handler that takes too long is not waited for.
void HostedLibrary::AwaitEvents(std::uint32_t sent) {
  std::unique_lock lock(events_mutex_);
  event_handed_on_.wait_for(lock, options_.patience, [&] {
    return events_ended_ || static_cast<std::int32_t>(sent - events_handed_on_) <= 0;
  });
}

}  // namespace quillon::host
