// SPDX-License-Identifier: MIT
#pragma once

#include <array>
#include <cstdint>
#include <optional>
#include <span>
#include <variant>
#include <vector>

namespace quillon::usbip {

// USB/IP, as the Linux kernel speaks it once a device is attached (Documentation/usb/usbip_protocol
// of the kernel): requests of 48 bytes, in network byte order, each followed by the data of an OUT
// transfer.
//
//   0        4        8          12         16        20 .. 47
//  +--------+--------+----------+----------+---------+-----------------------------------------+
//  | command| number | device   | direction| endpoint| of the command                          |
//  +--------+--------+----------+----------+---------+-----------------------------------------+
//   submit    20 flags, 24 length, 28 start, 32 packets, 36 interval, 40 setup (8 bytes)
//   unlink    20 number of the transfer to take back
//   answers   20 status, 24 length (of a transfer)
inline constexpr std::size_t kHeaderBytes = 48;

// No transfer of a HID board comes near this. A request that announces more makes no sense.
inline constexpr std::uint32_t kMostTransferBytes = 0x10000;

// Statuses of transfers: the kernel's error numbers. kNoDevice is what a host controller reports
// when nobody is there to acknowledge a packet.
inline constexpr std::int32_t kDone = 0, kStall = -32, kNoDevice = -71, kUnlinked = -104;

// A transfer that the host wants done.
struct Submit {
  std::uint32_t number = 0;
  std::uint32_t endpoint = 0;
  bool in = false;
  std::uint32_t length = 0;
  std::array<std::uint8_t, 8> setup{};  // endpoint 0
  std::vector<std::uint8_t> data{};     // OUT: `length` bytes
};

// A transfer that it takes back.
struct Unlink {
  std::uint32_t number = 0;
  std::uint32_t victim = 0;
};

using HostRequest = std::variant<Submit, Unlink>;

// Cuts a stream of bytes into requests. What makes no sense breaks the stream for good: nobody
// could tell where the next request begins.
class RequestReader {
 public:
  void Add(std::span<const std::uint8_t> bytes);
  // The next request that is complete, if any.
  std::optional<HostRequest> Next();
  bool Broken() const { return broken_; }

 private:
  std::optional<HostRequest> Break();

  std::vector<std::uint8_t> bytes_;
  bool broken_ = false;
};

// Answers to a transfer: with the data of an IN transfer, or with how many bytes of an OUT transfer
// were taken.
std::vector<std::uint8_t> InAnswer(std::uint32_t number, std::int32_t status,
                                   std::span<const std::uint8_t> data);
std::vector<std::uint8_t> OutAnswer(std::uint32_t number, std::int32_t status, std::uint32_t taken);

// The answer to an Unlink: kUnlinked when the transfer will not be answered, kDone when it was.
std::vector<std::uint8_t> UnlinkAnswer(std::uint32_t number, std::int32_t status);

}  // namespace quillon::usbip
