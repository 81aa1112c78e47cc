// SPDX-License-Identifier: MIT
#pragma once

#include <vector>

#include "conformance/Checks.h"
#include "conformance/ConformanceMain.h"
#include "conformance/Options.h"

namespace quillon::conformance {

// Checks with boards that leave the bus, some of which come back. Only the checks that the options
// ask for.
std::vector<Check> DepartureChecks(const Options& options, const ConformanceIo& io, Moves& moves);

}  // namespace quillon::conformance
