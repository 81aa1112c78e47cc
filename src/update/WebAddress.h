// SPDX-License-Identifier: MIT
#pragma once

#include <QString>

namespace quillon {

// Whether this is a whole http or https address, with a server's name and nothing around it. Only
// such are fetched or given to a browser: lists come from outside, and other schemes start programs
// and open files.
bool IsWebAddress(const QString& address);

}  // namespace quillon
