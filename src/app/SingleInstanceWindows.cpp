// SPDX-License-Identifier: MIT
#include <windows.h>

#include "app/SingleInstance.h"

namespace quillon {

struct SingleInstance::Handle {
  HANDLE mutex = nullptr;
};

SingleInstance::SingleInstance() : handle_(std::make_unique<Handle>()) {
  handle_->mutex = CreateMutexW(nullptr, FALSE, L"KV Quillon");
  taken_ = GetLastError() == ERROR_ALREADY_EXISTS;
}

SingleInstance::~SingleInstance() {
  if (handle_->mutex != nullptr) CloseHandle(handle_->mutex);
}

}  // namespace quillon
