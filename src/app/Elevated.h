// SPDX-License-Identifier: MIT
#pragma once

#include <QStringList>
#include <cstdint>
#include <functional>

#include "access/UdevRule.h"

namespace quillon {

enum class ElevatedEnd : std::uint8_t {
  kDone,
  kDismissed,  // the user closed the question for the password
  kFailed,
};

struct ElevatedResult {
  ElevatedEnd end = ElevatedEnd::kFailed;
  QString said{};  // the first line of what went wrong, raw; often empty
};

// What the system offers for boards that the user may not open. Where it offers nothing, as on
// Windows, both are empty.
struct AccessHelp {
  std::function<FoundRule()> find_rule;

  // Runs pkexec with these arguments, one run at a time, and calls `done` when it has ended, or at
  // once when it cannot be started. When the last copy of this function is destroyed, a run that is
  // under way is stopped, or left alone if it can no longer be stopped. `done` is not called then.
  std::function<void(const QStringList& arguments, std::function<void(const ElevatedResult&)> done)>
      run;
};

// The real help of this platform.
AccessHelp SystemAccessHelp();

}  // namespace quillon
