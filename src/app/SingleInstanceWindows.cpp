// SPDX-License-Identifier: MIT
#include <windows.h>

#include <system_error>

#include "app/SingleInstance.h"

namespace quillon {

struct SingleInstance::Handle {
  HANDLE mutex = nullptr;
};

SingleInstance::SingleInstance(const std::filesystem::path& /*temporary*/)
    : handle_(std::make_unique<Handle>()) {
  handle_->mutex = CreateMutexW(nullptr, FALSE, L"KV Quillon");
  const DWORD error = GetLastError();
  // The mutex of a start as administrator exists, but is not for others to open.
  taken_ =
      error == ERROR_ALREADY_EXISTS || (handle_->mutex == nullptr && error == ERROR_ACCESS_DENIED);
  if (handle_->mutex != nullptr || taken_) return;
  problem_ = "Quillon cannot tell whether it is running already (" +
             std::system_category().message(static_cast<int>(error)) + ").";
}

SingleInstance::~SingleInstance() {
  if (handle_->mutex != nullptr) CloseHandle(handle_->mutex);
}

}  // namespace quillon
