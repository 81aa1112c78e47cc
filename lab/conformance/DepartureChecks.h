// SPDX-License-Identifier: MIT
#pragma once

#include <vector>

#include "conformance/Checks.h"
#include "conformance/ConformanceMain.h"
#include "conformance/Options.h"

namespace quillon::conformance {

// Boards that leave the bus and, some, come back; those checks that the options ask for.
std::vector<Check> DepartureChecks(const Options& options, const ConformanceIo& io, Moves& moves);

}  // namespace quillon::conformance
