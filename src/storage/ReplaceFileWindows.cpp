// SPDX-License-Identifier: MIT
#include <windows.h>
// There it is another name of a function of the system's.
#undef ReplaceFile

#include <cerrno>
#include <fstream>

#include "storage/Leftovers.h"
#include "storage/ReplaceFile.h"

namespace quillon {
namespace {

std::error_code Write(const std::filesystem::path& file, std::string_view bytes) {
  errno = 0;
  std::ofstream stream(file, std::ios::binary | std::ios::trunc);
  stream.write(bytes.data(), static_cast<std::streamsize>(bytes.size()));
  stream.close();
  if (!stream.fail()) return {};
  return {errno != 0 ? errno : EIO, std::generic_category()};
}

}  // namespace

// A file in the user's profile is the user's alone there, so the readers make no difference.
std::optional<FileProblem> ReplaceFile(const std::filesystem::path& file, std::string_view bytes,
                                       FileReaders /*readers*/) {
  std::error_code ignored;
  if (std::filesystem::is_directory(file, ignored)) return FileProblem{"is a folder", {}};
  std::filesystem::path temporary = file;
  temporary += OwnEnding(static_cast<long>(GetCurrentProcessId()));
  std::error_code code = Write(temporary, bytes);
  if (!code && MoveFileExW(temporary.c_str(), file.c_str(),
                           MOVEFILE_REPLACE_EXISTING | MOVEFILE_WRITE_THROUGH) == 0)
    code.assign(static_cast<int>(GetLastError()), std::system_category());
  if (!code) return std::nullopt;
  std::filesystem::remove(temporary, ignored);
  return FileProblem{"cannot be written: " + code.message(), code};
}

bool HasEnded(int process) {
  const HANDLE handle = OpenProcess(SYNCHRONIZE, FALSE, static_cast<DWORD>(process));
  if (handle == nullptr) return GetLastError() == ERROR_INVALID_PARAMETER;
  // Somebody may still hold what is left of a process.
  const bool ended = WaitForSingleObject(handle, 0) == WAIT_OBJECT_0;
  CloseHandle(handle);
  return ended;
}

}  // namespace quillon
