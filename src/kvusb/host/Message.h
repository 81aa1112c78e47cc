// SPDX-License-Identifier: MIT
#pragma once

#include <algorithm>
#include <array>
#include <cstddef>
#include <cstdint>
#include <cstring>
#include <span>
#include <string_view>
#include <type_traits>

#include "kvusb/HidPacket.h"
#include "kvusb/kvusb.h"

// What travels between a program and the host of its HID library (kvusb-host), over a pipe that
// nobody else sees. The host speaks first, with kHello. After that the program sends a request, the
// host calls the library and answers. Events of boards that come and go have a pipe of their own.
//
// Both sides run on one machine but may be 32 and 64 bits wide, so only types of exact width
// travel, in the machine's byte order.
//
// A library may know a board by the address of its record, so the host keeps a mirror of the
// program's table: a place for each record, which never moves. Records travel whole, both ways. Of
// one that comes to the host only the bytes go into the mirror that the program has changed since
// it last saw them; others the library may have changed meanwhile.
namespace quillon::host {

// The first message carries it. A host of another version is of no use.
inline constexpr std::uint32_t kProtocol = 1;

// Places in the mirror: the program's table with its margin, then some for records that stand
// elsewhere.
inline constexpr std::uint32_t kTablePlaces = 1280;
inline constexpr std::uint32_t kStrangerPlaces = KVUSB_MOST_BOARDS;
inline constexpr std::uint32_t kPlaces = kTablePlaces + kStrangerPlaces;

inline constexpr std::size_t kMostText = 2048;

//             request                        answer
enum class Function : std::uint32_t {
  kHello,   //                               number: kProtocol; result: 0, or 1 and a text says why
  kDetect,  // number: type; count; records  count; result; records
  kWrite,   // a record, a packet            result; both back
  kRead,    // a record, a packet            result; both back
  kExchange,  // as kRead; number: ReadAfter   result: of the read; both back
  kClose,     // records                       result; records
  kListen,    // number: 1 listen, 0 do not    result
  kDescribe,  // a record, or none             result: kind of the problem; a text
};

struct Head {
  std::uint32_t size = 0;    // bytes that follow
  std::uint32_t serial = 0;  // an answer has that of its request
  Function function = Function::kHello;
  std::uint32_t first = 0;    // place of the first record
  std::uint32_t records = 0;  // that follow; packet or text come after them
  std::uint32_t number = 0;
  std::uint32_t count = 0;
  std::int32_t result = 0;
  std::uint32_t events = 0;  // in an answer: events sent so far
};

inline constexpr std::size_t kMostBody = kTablePlaces * sizeof(DeviceRecord) + kMostText;

struct Message {
  Head head;
  std::array<std::uint8_t, kMostBody> body{};

  // Makes it a message without a body.
  void Begin(Function function) {
    head = {};
    head.function = function;
  }
  // Records come before all other bytes.
  void Put(std::uint32_t first, std::span<const DeviceRecord> records) {
    head.first = first;
    head.records = static_cast<std::uint32_t>(records.size());
    Append(records.data(), records.size_bytes());
  }
  void Put(std::span<const std::uint8_t> packet) { Append(packet.data(), packet.size()); }
  void Put(std::string_view text) { Append(text.data(), std::min(text.size(), kMostText)); }

  // Whether the head's numbers agree: for what comes from outside, before anything below.
  bool IsSound() const {
    return head.size <= body.size() && head.records <= kTablePlaces && head.first < kPlaces &&
           head.records <= kPlaces - head.first && head.records * sizeof(DeviceRecord) <= head.size;
  }
  void CopyRecord(std::size_t index, DeviceRecord& to) const {
    std::memcpy(&to, body.data() + index * sizeof to, sizeof to);
  }
  // What follows the records.
  std::span<std::uint8_t> Rest() {
    return std::span(body).first(head.size).subspan(head.records * sizeof(DeviceRecord));
  }

 private:
  void Append(const void* bytes, std::size_t size) {
    if (size == 0) return;
    std::memcpy(body.data() + head.size, bytes, size);
    head.size += static_cast<std::uint32_t>(size);
  }
};

// A board came or went; what a DeviceChangeHandler is told. A longer path is cut.
struct EventMessage {
  std::uint32_t event = 0;
  std::uint32_t device_type = 0;
  std::array<char, 504> path{};
};

static_assert(sizeof(Head) == 36 && offsetof(Message, body) == sizeof(Head));
static_assert(sizeof(EventMessage) == 512);
static_assert(std::is_trivially_copyable_v<Message> && std::is_trivially_copyable_v<EventMessage>);

// One end of a pipe.
class Pipe {
 public:
  Pipe() = default;
  Pipe(const Pipe&) = delete;
  Pipe& operator=(const Pipe&) = delete;
  virtual ~Pipe() = default;

  // Waits for bytes and takes as many as there are. 0 at the end, and when it took too long.
  virtual std::size_t Read(std::span<std::uint8_t> to) = 0;
  // Writes one byte or more; 0 when nobody reads, and when it took too long.
  virtual std::size_t Write(std::span<const std::uint8_t> bytes) = 0;
};

// False at the end of the pipe, or when what came is no sound message.
bool Receive(Pipe& pipe, Message& message);
bool Send(Pipe& pipe, const Message& message);

bool ReceiveEvent(Pipe& pipe, EventMessage& event);
bool SendEvent(Pipe& pipe, const EventMessage& event);

}  // namespace quillon::host
