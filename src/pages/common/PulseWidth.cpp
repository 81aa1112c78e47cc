// SPDX-License-Identifier: MIT
#include "pages/common/PulseWidth.h"

#include "pages/common/UserPrompts.h"

namespace quillon {

bool AcceptPulseWidth(std::uint32_t entered, UserPrompts& prompts, QWidget* parent) {
  constexpr std::uint32_t kLargestPulseWidth = 255;
  if (entered <= kLargestPulseWidth) return true;
  prompts.Message(parent, QStringLiteral("Enter a value between 0 - 255"),
                  QStringLiteral("Invalid Pulse Width"), UserPrompts::Icon::kExclamation);
  return false;
}

}  // namespace quillon
