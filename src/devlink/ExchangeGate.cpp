// SPDX-License-Identifier: MIT
#include "devlink/ExchangeGate.h"

namespace quillon {

void ExchangeGate::Request() {
  if (!IsOpen()) {
    requested_ = true;
  } else if (action_) {
    action_();
  }
}

void ExchangeGate::Release() {
  --holds_;
  if (IsOpen() && std::exchange(requested_, false) && action_) action_();
}

}  // namespace quillon
