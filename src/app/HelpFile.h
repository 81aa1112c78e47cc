// SPDX-License-Identifier: MIT
#pragma once

#include <QString>
#include <functional>

namespace quillon {

// Opens the manual, quillon.pdf: the one in the current directory, else the one that was installed
// with the program. `open` opens a file and returns whether it could. False if there is none, or no
// program that shows it.
bool OpenHelpFile(const std::function<bool(const QString& path)>& open);

}  // namespace quillon
