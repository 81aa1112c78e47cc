// SPDX-License-Identifier: MIT
#pragma once

#include <unistd.h>

#include <utility>

namespace quillon::usbip {

// Owns an open file of the system, or none (-1).
class FileDescriptor {
 public:
  FileDescriptor() = default;
  explicit FileDescriptor(int number) : number_(number) {}
  FileDescriptor(FileDescriptor&& other) noexcept : number_(std::exchange(other.number_, -1)) {}
  FileDescriptor& operator=(FileDescriptor&& other) noexcept {
    std::swap(number_, other.number_);
    other.Close();
    return *this;
  }
  ~FileDescriptor() { Close(); }

  int Number() const { return number_; }
  bool IsOpen() const { return number_ >= 0; }
  void Close() {
    if (IsOpen()) close(std::exchange(number_, -1));
  }

 private:
  int number_ = -1;
};

}  // namespace quillon::usbip
