// SPDX-License-Identifier: MIT
#include "kvusb/host/HostServer.h"

#include <algorithm>

#include "kvusb/CopyText.h"

namespace quillon::host {
namespace {

bool AreEqual(const DeviceRecord& a, const DeviceRecord& b) {
  return std::memcmp(&a, &b, sizeof a) == 0;
}

// Bytes of `to` become those of `from` where that differs from `known`.
void MergeRecord(const DeviceRecord& from, const DeviceRecord& known, DeviceRecord& to) {
  const auto* const from_bytes = reinterpret_cast<const std::uint8_t*>(&from);
  const auto* const known_bytes = reinterpret_cast<const std::uint8_t*>(&known);
  auto* const to_bytes = reinterpret_cast<std::uint8_t*>(&to);
  for (std::size_t i = 0; i < sizeof to; ++i)
    if (from_bytes[i] != known_bytes[i]) to_bytes[i] = from_bytes[i];
}

}  // namespace

HostServer::HostServer(HidLibrary& library, Pipe& calls, Pipe& events)
    : library_(library), calls_(calls), events_(events) {}

HostServer::~HostServer() { library_.SetDeviceChangeHandler(nullptr, nullptr); }

void HostServer::Serve() {
  while (Receive(calls_, *message_)) {
    if (!Answer()) return;
    message_->head.events = events_sent_;
    if (!Send(calls_, *message_)) return;
  }
}

bool HostServer::Answer() {
  Merge();
  switch (message_->head.function) {
    case Function::kDetect:
      Detect();
      return true;
    case Function::kWrite:
    case Function::kRead:
    case Function::kExchange:
      return Transfer(message_->head.function);
    case Function::kClose:
      Close();
      return true;
    case Function::kListen:
      Listen();
      return true;
    case Function::kDescribe:
      Describe();
      return true;
    default:
      return false;
  }
}

// The places of the records that came.
std::span<DeviceRecord> HostServer::Mirrored() {
  return std::span(mirror_).subspan(message_->head.first, message_->head.records);
}

void HostServer::Merge() {
  const auto places = Mirrored();
  for (std::size_t i = 0; i < places.size(); ++i) {
    DeviceRecord came;
    message_->CopyRecord(i, came);
    DeviceRecord& known = known_[message_->head.first + i];
    if (AreEqual(came, known)) continue;
    MergeRecord(came, known, places[i]);
    known = came;
  }
}

void HostServer::PutMirror(std::uint32_t first, std::size_t records) {
  const auto places = std::span(mirror_).subspan(first, records);
  std::copy(places.begin(), places.end(), known_.begin() + first);
  message_->Put(first, places);
}

// Back go all records that the library counts, and whatever else it wrote.
void HostServer::Detect() {
  const Head asked = message_->head;
  const auto free = std::span(mirror_).subspan(asked.first);
  std::uint32_t count = asked.count;
  const std::int32_t result = library_.DetectHID(count, free, asked.number);
  std::size_t written = result == 0 ? 0 : std::min<std::size_t>(count, kTablePlaces);
  written = std::min(written, free.size());
  for (std::size_t i = asked.records; i > written; --i)
    if (!AreEqual(free[i - 1], known_[asked.first + i - 1])) written = i;
  message_->Begin(Function::kDetect);
  message_->head.serial = asked.serial;
  message_->head.count = count;
  message_->head.result = result;
  PutMirror(asked.first, written);
}

bool HostServer::Transfer(Function function) {
  Message& message = *message_;
  const auto rest = message.Rest();
  if (message.head.records != 1 || rest.size() != KVUSB_PACKET_BYTES) return false;
  DeviceRecord& record = mirror_[message.head.first];
  const auto packet = rest.first<KVUSB_PACKET_BYTES>();
  if (function == Function::kWrite)
    message.head.result = library_.WriteData(record, packet);
  else if (function == Function::kRead)
    message.head.result = library_.ReadData(record, packet);
  else
    message.head.result = library_.Exchange(record, packet, ReadAfter(message.head.number));
  std::memcpy(message.body.data(), &record, sizeof record);
  known_[message.head.first] = record;
  return true;
}

void HostServer::Close() {
  const Head asked = message_->head;
  const auto places = Mirrored();
  message_->Begin(Function::kClose);
  message_->head.serial = asked.serial;
  message_->head.result = library_.CloseDevices(places);
  PutMirror(asked.first, places.size());
}

void HostServer::Listen() {
  Head& head = message_->head;
  const bool listen = head.number != 0;
  head.result = library_.SetDeviceChangeHandler(listen ? &HostServer::OnEvent : nullptr, this);
  head.size = head.records = 0;
}

void HostServer::Describe() {
  const Head asked = message_->head;
  const Problem problem =
      library_.DescribeProblem(asked.records == 0 ? nullptr : &mirror_[asked.first]);
  message_->Begin(Function::kDescribe);
  message_->head.serial = asked.serial;
  message_->head.result = problem.kind;
  message_->Put(problem.sentence);
}

// On any thread. An answer tells how many events came before it.
void KVUSB_CALL HostServer::OnEvent(std::uint32_t event, std::uint32_t device_type,
                                    const char* path, void* context) {
  auto* const self = static_cast<HostServer*>(context);
  EventMessage message;
  message.event = event;
  message.device_type = device_type;
  CopyText(path == nullptr ? "" : path, message.path.data(),
           static_cast<std::uint32_t>(message.path.size()));
  const std::scoped_lock lock(self->mutex_);
  if (SendEvent(self->events_, message)) ++self->events_sent_;
}

}  // namespace quillon::host
