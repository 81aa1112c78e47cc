// SPDX-License-Identifier: MIT
#pragma once

#include <cstdint>
#include <vector>

#include "kvusb/HidPacket.h"

namespace quillon::conformance {

// Requests that a board of this type and product answers with their echo, and that change nothing
// on it. Empty where none is known.
std::vector<HidPacket> HarmlessQuestions(std::uint32_t type, std::uint16_t product_id);

}  // namespace quillon::conformance
