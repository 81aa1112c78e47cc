// SPDX-License-Identifier: MIT
#include "kvusb/hid/OverlappedHid.h"

// Only after the above. The headers of the HID driver do not know C++.
extern "C" {
#include <hidsdi.h>
}

#include <algorithm>
#include <utility>

namespace quillon {
namespace {

using Clock = HidHandle::Clock;

// A driver ends a cancelled transfer at once, unless it has lost it.
constexpr std::chrono::seconds kCancelLimit(1);

bool EndsBy(HANDLE event, Clock::time_point deadline) {
  constexpr long long kMost = INFINITE - 1;
  const auto left = std::chrono::ceil<std::chrono::milliseconds>(deadline - Clock::now());
  const auto limit = static_cast<DWORD>(std::clamp<long long>(left.count(), 0, kMost));
  return WaitForSingleObject(event, limit) == WAIT_OBJECT_0;
}

}  // namespace

OverlappedHid::Transfer::Transfer(std::size_t count)
    : ended(CreateEventW(nullptr, TRUE, FALSE, nullptr)), bytes(count) {
  overlapped.hEvent = ended.get();
}

OverlappedHid::OverlappedHid(FileHandle file, std::size_t input_bytes, std::size_t output_bytes,
                             Clock::duration write_limit)
    : file_(std::move(file)),
      input_bytes_(input_bytes),
      output_bytes_(output_bytes),
      write_limit_(write_limit) {}

OverlappedHid::~OverlappedHid() {
  if (reading_) Cancel(std::move(reading_));
}

// Nothing if it fails at once.
OverlappedHid::TransferPointer OverlappedHid::Begin(TransferPointer transfer, bool read) {
  std::vector<std::uint8_t>& bytes = transfer->bytes;
  const auto count = static_cast<DWORD>(bytes.size());
  const BOOL done =
      read ? ReadFile(file_.get(), bytes.data(), count, nullptr, &transfer->overlapped)
           : WriteFile(file_.get(), bytes.data(), count, nullptr, &transfer->overlapped);
  if (done == 0 && GetLastError() != ERROR_IO_PENDING) return nullptr;
  return transfer;
}

std::optional<std::size_t> OverlappedHid::ResultOf(Transfer& transfer) {
  DWORD moved = 0;
  if (GetOverlappedResult(file_.get(), &transfer.overlapped, &moved, FALSE) == 0)
    return std::nullopt;
  return moved;
}

void OverlappedHid::Cancel(TransferPointer transfer) {
  CancelIoEx(file_.get(), &transfer->overlapped);
  if (EndsBy(transfer->ended.get(), Clock::now() + kCancelLimit)) return;
  // Better lost than given to somebody else while Windows may still write to it.
  static_cast<void>(transfer.release());
}

// A failure alone does not say so: a board may just have refused a report.
void OverlappedHid::CloseIfGone() {
  HIDD_ATTRIBUTES attributes{};
  attributes.Size = sizeof attributes;
  if (HidD_GetAttributes(file_.get(), &attributes) != 0) return;
  if (reading_) Cancel(std::move(reading_));
  file_.reset();
}

// Windows takes as many bytes as the longest report has, and no others.
bool OverlappedHid::Write(PacketSpan packet) {
  if (!file_) return false;
  auto transfer = std::make_unique<Transfer>(output_bytes_);
  std::copy_n(packet.begin(), std::min(packet.size(), output_bytes_), transfer->bytes.begin());
  transfer = Begin(std::move(transfer), false);
  const bool ended = transfer && EndsBy(transfer->ended.get(), Clock::now() + write_limit_);
  if (ended && ResultOf(*transfer)) return true;
  if (transfer && !ended) Cancel(std::move(transfer));
  CloseIfGone();
  return false;
}

int OverlappedHid::Read(std::span<std::uint8_t> report, Clock::time_point deadline) {
  if (!file_) return -1;
  if (!reading_) reading_ = Begin(std::make_unique<Transfer>(input_bytes_), true);
  if (reading_ && !EndsBy(reading_->ended.get(), deadline)) return 0;
  const TransferPointer read = std::exchange(reading_, nullptr);
  const auto moved = read ? ResultOf(*read) : std::nullopt;
  if (!moved) {
    CloseIfGone();
    return -1;
  }
  // A report without a number comes with a zero in its place.
  auto bytes = std::span(read->bytes).first(*moved);
  if (!bytes.empty() && bytes[0] == 0) bytes = bytes.subspan(1);
  bytes = bytes.first(std::min(bytes.size(), report.size()));
  std::ranges::copy(bytes, report.begin());
  return static_cast<int>(bytes.size());
}

}  // namespace quillon
