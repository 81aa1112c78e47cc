// SPDX-License-Identifier: MIT
#pragma once

#include <cstddef>
#include <cstdint>
#include <deque>
#include <functional>
#include <optional>

#include "kvusb/ForwardingLibrary.h"

namespace quillon::testing {

// Answers the question "what if this call goes wrong?": hands every call on to another library, but
// for the faults that a test asks for.
//
//   FaultyLibrary faulty(library);
//   faulty.FailRead({.nth = 2, .command = 0x11});
//
// Calls are counted from the moment of asking, each fault by itself. A read counts for the command
// of the write before it. A fault that never struck fails the test, which would else prove nothing.
class FaultyLibrary : public ForwardingLibrary {
 public:
  // Which of the writes or reads a fault strikes.
  struct Which {
    int nth = 1;                                         // counted from 1
    std::optional<std::uint8_t> command = std::nullopt;  // of this command's only
    bool onwards = false;                                // and all that follow
  };

  using ForwardingLibrary::ForwardingLibrary;
  ~FaultyLibrary() override;

  // The request does not reach the board.
  void FailWrite(Which which, std::int32_t code = KVUSB_WRITE_FAILED);
  // The board does its work, but the answer is lost: the buffer stays as it was.
  void FailRead(Which which, std::int32_t code = KVUSB_READ_TIMEOUT);
  // Only the first `bytes` bytes of the buffer are replaced; the rest of the request stays.
  void AnswerShort(Which which, std::size_t bytes);
  void AnswerWithEcho(Which which, std::uint8_t echo);
  // Runs something just before the call, as an event that comes in the middle of an exchange.
  void BeforeWrite(Which which, std::function<void()> callback);
  void BeforeRead(Which which, std::function<void()> callback);

  // Forgets the faults that have not struck and says whether there were any. For loops that move
  // one fault through a procedure until it runs past the end.
  bool DropUnstruck();

  std::int32_t WriteData(DeviceRecord& record, PacketSpan packet) override;
  std::int32_t ReadData(DeviceRecord& record, PacketSpan packet) override;

 private:
  enum class Side { kWrite, kRead };
  using Pass = std::function<std::int32_t(PacketSpan)>;
  struct Fault {
    Side side;
    Which which;
    std::function<std::int32_t(PacketSpan packet, const Pass& pass)> act;
    int seen = 0;
  };

  std::int32_t Run(Side side, PacketSpan packet, Pass call);

  std::uint8_t command_ = 0;
  std::deque<Fault> faults_;  // a callback may add to it
};

}  // namespace quillon::testing
