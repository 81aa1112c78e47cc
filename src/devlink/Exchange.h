// SPDX-License-Identifier: MIT
#pragma once

#include <cstdint>
#include <span>

#include "kvusb/HidLibrary.h"

// The four exchange operations: a request goes out and the answer comes back in the same buffer.
// Each returns whether it succeeded and shows nothing. A caller trusts an answer only when its
// byte 0 echoes the command.
//
// A buffer holds at least 65 bytes. The block operations take larger ones: room for the whole range
// from byte 1 on (query), or the 6-byte header and the whole payload (send). A buffer too small for
// its own header's range is a failure, never an overrun.
namespace quillon {

// Data bytes that one chunk of a transfer carries.
inline constexpr std::size_t kQueryChunk = 63;
inline constexpr std::size_t kSendChunk = 59;

// Writes and reads. The result of the write is ignored on purpose: a board that still has an answer
// to give is believed. Fails only when the read fails.
[[nodiscard]] bool QueryPacket(HidLibrary& library, DeviceRecord& record,
                               std::span<std::uint8_t> packet);

// Writes and, if that succeeded, reads. For everything that changes the board or must be confirmed.
[[nodiscard]] bool SendPacket(HidLibrary& library, DeviceRecord& record,
                              std::span<std::uint8_t> packet);

// A query that is cut into chunks of 63 bytes when its length byte says 64 or more; the range is
// the one of the start and end bytes. The data stand in `packet` from byte 1 on. A failed chunk
// ends the transfer and leaves byte 0 zero. An empty range succeeds without an exchange.
[[nodiscard]] bool QueryBlock(HidLibrary& library, DeviceRecord& record,
                              std::span<std::uint8_t> packet);

// A send that is cut into chunks of 59 bytes when its length byte says 60 or more. Two properties
// that boards rely on: from the third chunk on the data are taken from the place of the second one
// again, and `packet` is rewritten (bytes 1 to 3 and the front of the payload are the last chunk's
// afterwards), so build header and payload anew for every send.
[[nodiscard]] bool SendBlock(HidLibrary& library, DeviceRecord& record,
                             std::span<std::uint8_t> packet);

}  // namespace quillon
