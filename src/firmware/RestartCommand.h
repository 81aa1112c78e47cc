// SPDX-License-Identifier: MIT
#pragma once

#include <cstdint>

#include "devlink/Products.h"
#include "kvusb/HidLibrary.h"

namespace quillon {

// Commands after which a board leaves the bus and comes back.
inline constexpr std::uint8_t kRestartSameMode = 9;
inline constexpr std::uint8_t kRestartOtherMode = 0xFF;

enum class RestartButton { kFlash, kDevice, kExecute, kReboot };

// The command that a button sends to a board of type `type` (its mode, see kvusb.h).
std::uint8_t RestartCommand(RestartButton button, std::uint32_t type, const Product& product);

// Tells the board to restart. The answer is ignored: hot-plug events tell when the board has left
// the bus and come back.
void SendRestart(HidLibrary& library, DeviceRecord& board, std::uint8_t command);

}  // namespace quillon
