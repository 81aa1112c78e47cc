// SPDX-License-Identifier: MIT
#pragma once

#include <string_view>

namespace quillon::host {

// What a program file or library of Windows is made for.
enum class PeMachine { kNone, kX86, kX64, kOther };

// So much of a file tells it: its second header stands within that in every file that a compiler
// makes.
inline constexpr std::size_t kPeFront = 65536;

// Read from the first bytes of a file, or from all of them; kNone for one that is not of Windows.
PeMachine PeMachineOf(std::string_view front);

}  // namespace quillon::host
