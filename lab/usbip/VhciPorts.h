// SPDX-License-Identifier: MIT
#pragma once

#include <string_view>
#include <vector>

namespace quillon::usbip {

// The free ports in a status file of the kernel's virtual host controllers that take a board, which
// is a full-speed device: those of a hub for high speed ("hs"), not of one for super speed ("ss").
// Lines that make no sense, the title among them, name no port.
//
//   hub port sta spd dev      sockfd local_busid
//   hs  0000 004 000 00000000 000000 0-0           004 is free, 006 in use
//   ss  0008 004 000 00000000 000000 0-0
std::vector<unsigned> FreePorts(std::string_view status);

}  // namespace quillon::usbip
