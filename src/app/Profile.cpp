// SPDX-License-Identifier: MIT
#include "app/Profile.h"

namespace quillon {

void Profile::SetAutoUpdate(int value) {
  settings_.setValue(kAutoUpdate, value);
  settings_.sync();
}

int Profile::Read(const char* key) const {
  constexpr int kDefault = 1;
  bool is_number = false;
  const int value = settings_.value(key, kDefault).toInt(&is_number);
  return is_number ? value : kDefault;
}

}  // namespace quillon
