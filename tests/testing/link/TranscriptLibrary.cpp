// SPDX-License-Identifier: MIT
#include "testing/link/TranscriptLibrary.h"

#include <gmock/gmock.h>

#include <algorithm>

namespace quillon::testing {

TranscriptLibrary::TranscriptLibrary(std::string_view transcript, std::source_location where)
    : where_(where) {
  Expect(transcript, where);
}

TranscriptLibrary::~TranscriptLibrary() {
  player_.ExpectNothingLeft();
  Judged(nullptr);
}

void TranscriptLibrary::Expect(std::string_view transcript, std::source_location where) {
  player_.ExpectNothingLeft();
  Judged(nullptr);
  where_ = where;
  auto parsed = ParseTrace(transcript);
  if (const auto* error = std::get_if<std::string>(&parsed)) {
    player_.Lose("The transcript cannot be read. " + *error);
    Judged(nullptr);
  } else {
    player_.Play(std::get<std::vector<TraceEntry>>(std::move(parsed)));
  }
}

std::int32_t TranscriptLibrary::DetectHID(std::uint32_t& count, std::span<DeviceRecord> free,
                                          std::uint32_t type) {
  const TraceEntry* entry = Judged(player_.Detect(free.data(), type));
  if (entry == nullptr || entry->result == 0) return 0;
  count = static_cast<std::uint32_t>(entry->boards.size());
  CopyBoards(*entry, free);
  return entry->result;
}

std::int32_t TranscriptLibrary::WriteData(DeviceRecord& record, PacketSpan packet) {
  const TraceEntry* entry = Judged(player_.Write(record, packet));
  return entry == nullptr ? std::int32_t{KVUSB_WRITE_FAILED} : entry->result;
}

std::int32_t TranscriptLibrary::ReadData(DeviceRecord& record, PacketSpan packet) {
  const TraceEntry* entry = Judged(player_.Read(record));
  if (entry == nullptr) return KVUSB_READ_FAILED;
  if (entry->HasPacket()) std::copy(entry->packet.begin(), entry->packet.end(), packet.begin());
  return entry->result;
}

std::int32_t TranscriptLibrary::CloseDevices(std::span<DeviceRecord> records) {
  const TraceEntry* entry = Judged(player_.Close(static_cast<std::uint32_t>(records.size())));
  return entry == nullptr ? 0 : entry->result;
}

const TraceEntry* TranscriptLibrary::Judged(const TraceEntry* entry) {
  if (!failed_ && !player_.Difference().empty()) {
    failed_ = true;
    ADD_FAILURE_AT(where_.file_name(), static_cast<int>(where_.line())) << player_.Difference();
  }
  return entry;
}

}  // namespace quillon::testing
