// SPDX-License-Identifier: MIT
#pragma once

#include <windows.h>

#include <chrono>
#include <cstdint>
#include <memory>
#include <optional>
#include <span>
#include <vector>

#include "kvusb/hid/HidSystem.h"

namespace quillon {

struct CloseFile {
  void operator()(HANDLE file) const { CloseHandle(file); }
};
using FileHandle = std::unique_ptr<void, CloseFile>;

// A board's file on Windows, opened for overlapped reads and writes.
//
// A read that has not ended in time goes on, and the next Read() takes up where it was. So what the
// board says always has a place to go, even if the board leaves right after it, and nothing is lost
// by cancelling. The file of a board that has left is closed at once: while it is open, the board
// is half there for Windows, and Wine waits for it before it lets any board come or go.
class OverlappedHid final : public HidHandle {
 public:
  // The lengths are those of the board's longest reports, with their report number. Windows itself
  // waits for ever for a board that does not take a report.
  OverlappedHid(FileHandle file, std::size_t input_bytes, std::size_t output_bytes,
                Clock::duration write_limit = std::chrono::seconds(2));
  ~OverlappedHid() override;

  bool Write(PacketSpan packet) override;
  int Read(std::span<std::uint8_t> report, Clock::time_point deadline) override;

 private:
  // A read or write under way, and the bytes that it is about.
  struct Transfer {
    explicit Transfer(std::size_t count);

    FileHandle ended;  // an event
    OVERLAPPED overlapped{};
    std::vector<std::uint8_t> bytes;
  };
  using TransferPointer = std::unique_ptr<Transfer>;

  TransferPointer Begin(TransferPointer transfer, bool read);
  // How many bytes were moved, or nothing when the transfer failed.
  std::optional<std::size_t> ResultOf(Transfer& transfer);
  void Cancel(TransferPointer transfer);
  void CloseIfGone();

  FileHandle file_;  // null when the board has left
  std::size_t input_bytes_, output_bytes_;
  Clock::duration write_limit_;
  TransferPointer reading_;  // null while there is none
};

}  // namespace quillon
