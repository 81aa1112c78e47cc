// SPDX-License-Identifier: MIT
#pragma once

#include <array>
#include <cstdint>
#include <utility>

#include "usbip/UsbDescriptors.h"

namespace quillon::usbip {

// The eight bytes that begin a control transfer (USB 2.0, 9.3).
struct Setup {
  explicit Setup(const std::array<std::uint8_t, 8>& bytes);

  std::uint8_t type, request;
  std::uint16_t value, index, length;
};

// Endpoint 0 of a board: standard requests, and those of the HID class (USB HID 1.11, 7.2).
class ControlPipe {
 public:
  enum class Reply : std::uint8_t {
    kStall,
    kDone,
    kOutputReport,  // the data of the transfer are a report for the board
  };
  struct Outcome {
    Reply reply = Reply::kStall;
    Bytes data{};  // IN; no longer than the setup asks for
  };

  explicit ControlPipe(UsbDescriptors descriptors) : descriptors_(std::move(descriptors)) {}

  const UsbDescriptors& Descriptors() const { return descriptors_; }

  Outcome Handle(const Setup& setup);

 private:
  Outcome OfDevice(const Setup& setup);
  Outcome OfInterface(const Setup& setup) const;
  Outcome OfHidClass(const Setup& setup) const;

  UsbDescriptors descriptors_;
  std::uint8_t configuration_ = 0;
};

}  // namespace quillon::usbip
