// SPDX-License-Identifier: MIT
#include <windows.h>
// After windows.h.
#include <shellapi.h>

#include <cstdlib>

#include "kvusb/host/HostProcess.h"
#include "kvusb/host/HostSide.h"

namespace quillon::host {
namespace {

class InheritedHandle : public Pipe {
 public:
  explicit InheritedHandle(HANDLE handle) : handle_(handle) {}

  std::size_t Read(std::span<std::uint8_t> to) override {
    DWORD read = 0;
    return ReadFile(handle_, to.data(), static_cast<DWORD>(to.size()), &read, nullptr) ? read : 0;
  }
  std::size_t Write(std::span<const std::uint8_t> bytes) override {
    DWORD written = 0;
    const auto size = static_cast<DWORD>(bytes.size());
    return WriteFile(handle_, bytes.data(), size, &written, nullptr) ? written : 0;
  }

 private:
  HANDLE handle_;
};

std::string Utf8(const wchar_t* text) {
  const int size = WideCharToMultiByte(CP_UTF8, 0, text, -1, nullptr, 0, nullptr, nullptr);
  if (size <= 0) return {};
  std::string out(static_cast<std::size_t>(size), '\0');
  WideCharToMultiByte(CP_UTF8, 0, text, -1, out.data(), size, nullptr, nullptr);
  out.resize(out.size() - 1);
  return out;
}

// Setting the error mode alone does not keep a debugger from being started first.
LONG WINAPI EndNow(EXCEPTION_POINTERS* /*exception*/) {
  TerminateProcess(GetCurrentProcess(), kCrashedCode);
  return EXCEPTION_EXECUTE_HANDLER;
}

}  // namespace

std::vector<std::string> CommandLine(int /*argc*/, char** /*argv*/) {
  int count = 0;
  wchar_t** const words = CommandLineToArgvW(GetCommandLineW(), &count);
  std::vector<std::string> out;
  for (int i = 1; words != nullptr && i < count; ++i) out.push_back(Utf8(words[i]));
  LocalFree(words);
  return out;
}

// 32 bits of a handle count, sign-extended: so it means the same in a process of the other width.
std::unique_ptr<Pipe> OpenInherited(const std::string& number) {
  const auto bits = static_cast<std::int32_t>(std::strtoul(number.c_str(), nullptr, 10));
  auto* const handle = reinterpret_cast<HANDLE>(static_cast<std::intptr_t>(bits));
  SetHandleInformation(handle, HANDLE_FLAG_INHERIT, 0);
  return std::make_unique<InheritedHandle>(handle);
}

// The program's job object ends this process when the program ends.
void EndWithProgram() {
  SetErrorMode(SEM_FAILCRITICALERRORS | SEM_NOGPFAULTERRORBOX | SEM_NOOPENFILEERRORBOX);
  SetUnhandledExceptionFilter(EndNow);
}

}  // namespace quillon::host
