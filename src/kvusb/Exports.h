// SPDX-License-Identifier: MIT
#pragma once

#include "kvusb/HidLibrary.h"

namespace quillon {

// The library of ours behind the C functions of Exports.cpp, which is compiled into each of them.
// Each defines it; it is made at the first call. It may throw, and so may the library's functions:
// that is the failure of the C function, and DescribeProblem(NULL) tells what the last one said.
HidLibrary& TheLibrary();

}  // namespace quillon
