// SPDX-License-Identifier: MIT
#include <windows.h>

#include <algorithm>
#include <atomic>
#include <system_error>
#include <utility>
#include <vector>

#include "kvusb/host/HostProcess.h"

namespace quillon::host {
namespace {

using Clock = HostProcess::Clock;

constexpr DWORD kBuffer = 65536;

struct CloseIt {
  void operator()(void* handle) const { CloseHandle(handle); }
};
using Handle = std::unique_ptr<void, CloseIt>;

Handle Owned(HANDLE handle) { return Handle(handle == INVALID_HANDLE_VALUE ? nullptr : handle); }

std::string Reason() { return std::system_category().message(static_cast<int>(GetLastError())); }

DWORD Left(Clock::time_point deadline) {
  if (deadline == Clock::time_point::max()) return INFINITE;
  const auto left = std::chrono::ceil<std::chrono::milliseconds>(deadline - Clock::now()).count();
  return static_cast<DWORD>(std::clamp<long long>(left, 0, INFINITE - 1));
}

// The program's end of a named pipe. It is overlapped, so that waiting can have a limit.
class DuplexPipe : public Pipe {
 public:
  DuplexPipe(Handle pipe, Handle event) : pipe_(std::move(pipe)), event_(std::move(event)) {}

  void SetDeadline(Clock::time_point deadline) { deadline_ = deadline; }
  bool WasLate() const { return late_; }
  void Close() { pipe_.reset(); }

  std::size_t Read(std::span<std::uint8_t> to) override {
    return Moved([&](OVERLAPPED* overlapped) {
      return ReadFile(pipe_.get(), to.data(), static_cast<DWORD>(to.size()), nullptr, overlapped);
    });
  }
  std::size_t Write(std::span<const std::uint8_t> bytes) override {
    return Moved([&](OVERLAPPED* overlapped) {
      const auto size = static_cast<DWORD>(bytes.size());
      return WriteFile(pipe_.get(), bytes.data(), size, nullptr, overlapped);
    });
  }

 private:
  template <typename Call>
  std::size_t Moved(Call call) {
    late_ = false;
    OVERLAPPED overlapped{};
    overlapped.hEvent = event_.get();
    const bool at_once = call(&overlapped) != 0;
    if (!at_once && GetLastError() != ERROR_IO_PENDING) return 0;
    if (!at_once && WaitForSingleObject(event_.get(), Left(deadline_)) != WAIT_OBJECT_0) {
      late_ = true;
      CancelIoEx(pipe_.get(), &overlapped);
    }
    // Also waits for the end of what was cancelled: until then the system writes to our stack.
    DWORD moved = 0;
    const bool good = GetOverlappedResult(pipe_.get(), &overlapped, &moved, TRUE) != 0;
    if (!good) return 0;
    late_ = false;
    return moved;
  }

  Handle pipe_;
  Handle event_;
  Clock::time_point deadline_ = Clock::time_point::max();
  bool late_ = false;
};

class ReadingPipe : public Pipe {
 public:
  explicit ReadingPipe(Handle pipe) : pipe_(std::move(pipe)) {}

  std::size_t Read(std::span<std::uint8_t> to) override {
    DWORD read = 0;
    const auto size = static_cast<DWORD>(to.size());
    return ReadFile(pipe_.get(), to.data(), size, &read, nullptr) != 0 ? read : 0;
  }
  std::size_t Write(std::span<const std::uint8_t> /*bytes*/) override { return 0; }

 private:
  Handle pipe_;
};

struct Pipes {
  std::unique_ptr<DuplexPipe> calls;
  std::unique_ptr<ReadingPipe> events;
  Handle their_calls;
  Handle their_events;
};

// Both ends are opened here, so nobody else can get hold of one. False with GetLastError().
bool OpenCalls(Pipes& pipes) {
  static std::atomic<unsigned> number = 0;
  LARGE_INTEGER now{};
  QueryPerformanceCounter(&now);
  const std::wstring name = LR"(\\.\pipe\quillon-)" + std::to_wstring(GetCurrentProcessId()) +
                            L"-" + std::to_wstring(now.QuadPart) + L"-" + std::to_wstring(++number);
  constexpr DWORD kOpen = PIPE_ACCESS_DUPLEX | FILE_FLAG_OVERLAPPED | FILE_FLAG_FIRST_PIPE_INSTANCE;
  auto ours =
      Owned(CreateNamedPipeW(name.c_str(), kOpen, PIPE_TYPE_BYTE | PIPE_REJECT_REMOTE_CLIENTS, 1,
                             kBuffer, kBuffer, 0, nullptr));
  if (!ours) return false;
  SECURITY_ATTRIBUTES inherited{sizeof inherited, nullptr, TRUE};
  pipes.their_calls = Owned(CreateFileW(name.c_str(), GENERIC_READ | GENERIC_WRITE, 0, &inherited,
                                        OPEN_EXISTING, 0, nullptr));
  auto event = Owned(CreateEventW(nullptr, TRUE, FALSE, nullptr));
  if (!pipes.their_calls || !event) return false;
  pipes.calls = std::make_unique<DuplexPipe>(std::move(ours), std::move(event));
  return true;
}

bool OpenEvents(Pipes& pipes) {
  HANDLE read = nullptr;
  HANDLE write = nullptr;
  if (CreatePipe(&read, &write, nullptr, kBuffer) == 0) return false;
  pipes.events = std::make_unique<ReadingPipe>(Handle(read));
  pipes.their_events = Handle(write);
  return SetHandleInformation(write, HANDLE_FLAG_INHERIT, HANDLE_FLAG_INHERIT) != 0;
}

// A job whose processes end with the program, even if that crashes.
Handle MakeJob() {
  auto job = Owned(CreateJobObjectW(nullptr, nullptr));
  JOBOBJECT_EXTENDED_LIMIT_INFORMATION limits{};
  limits.BasicLimitInformation.LimitFlags = JOB_OBJECT_LIMIT_KILL_ON_JOB_CLOSE;
  if (!job || SetInformationJobObject(job.get(), JobObjectExtendedLimitInformation, &limits,
                                      sizeof limits) == 0)
    return nullptr;
  return job;
}

// The attribute of a new process that it gets these handles and no others.
class OnlyThese {
 public:
  explicit OnlyThese(std::vector<HANDLE> handles) : handles_(std::move(handles)) {
    SIZE_T size = 0;
    InitializeProcThreadAttributeList(nullptr, 1, 0, &size);
    room_.resize(size);
    good_ = InitializeProcThreadAttributeList(List(), 1, 0, &size) != 0 &&
            UpdateProcThreadAttribute(List(), 0, PROC_THREAD_ATTRIBUTE_HANDLE_LIST, handles_.data(),
                                      handles_.size() * sizeof(HANDLE), nullptr, nullptr) != 0;
  }
  ~OnlyThese() { DeleteProcThreadAttributeList(List()); }
  OnlyThese(const OnlyThese&) = delete;
  OnlyThese& operator=(const OnlyThese&) = delete;

  bool IsGood() const { return good_; }
  LPPROC_THREAD_ATTRIBUTE_LIST List() {
    return reinterpret_cast<LPPROC_THREAD_ATTRIBUTE_LIST>(room_.data());
  }

 private:
  std::vector<HANDLE> handles_;
  std::vector<std::byte> room_;
  bool good_ = false;
};

std::wstring NumberOf(const Handle& handle) {
  const auto value = reinterpret_cast<std::uintptr_t>(handle.get());
  return std::to_wstring(static_cast<std::uint32_t>(value));
}

class WindowsHost final : public HostProcess {
 public:
  WindowsHost(Handle process, Handle job, Pipes pipes)
      : process_(std::move(process)),
        job_(std::move(job)),
        calls_(std::move(pipes.calls)),
        events_(std::move(pipes.events)) {}
  ~WindowsHost() override { WindowsHost::End(); }

  Pipe& Calls() override { return *calls_; }
  Pipe& Events() override { return *events_; }
  void SetDeadline(Clock::time_point deadline) override { calls_->SetDeadline(deadline); }
  bool WasLate() const override { return calls_->WasLate(); }

  void Leave(Clock::time_point deadline) override {
    calls_->Close();
    WaitForSingleObject(process_.get(), Left(deadline));
  }

  // The pipe breaks a little before a process that ends by itself has ended.
  Ending End() override {
    constexpr DWORD kAtItsEnd = 100;
    if (calls_->WasLate() || WaitForSingleObject(process_.get(), kAtItsEnd) != WAIT_OBJECT_0) {
      TerminateProcess(process_.get(), 1);
      WaitForSingleObject(process_.get(), INFINITE);
      return Ending::kKilled;
    }
    DWORD code = 0;
    GetExitCodeProcess(process_.get(), &code);
    return code == kCrashedCode ? Ending::kCrashed : Ending::kLeft;
  }

 private:
  Handle process_;
  Handle job_;
  std::unique_ptr<DuplexPipe> calls_;
  std::unique_ptr<ReadingPipe> events_;
};

// Nothing that the library prints gets among the program's output. Suspended, or it could start a
// process of its own before it is in the job.
PROCESS_INFORMATION Create(const std::filesystem::path& program, std::wstring line,
                           OnlyThese& handles) {
  STARTUPINFOEXW startup{};
  startup.StartupInfo.cb = sizeof startup;
  startup.StartupInfo.dwFlags = STARTF_USESTDHANDLES;
  startup.lpAttributeList = handles.List();
  PROCESS_INFORMATION process{};
  CreateProcessW(program.c_str(), line.data(), nullptr, nullptr, TRUE,
                 EXTENDED_STARTUPINFO_PRESENT | CREATE_SUSPENDED | CREATE_NO_WINDOW, nullptr,
                 nullptr, &startup.StartupInfo, &process);
  return process;
}

}  // namespace

// Our copies of the host's ends go at the end of this function: or they would keep the pipes alive
// when the host has ended.
std::variant<std::unique_ptr<HostProcess>, std::string> StartHost(
    const std::filesystem::path& program, const std::filesystem::path& library) {
  Pipes pipes;
  if (!OpenCalls(pipes) || !OpenEvents(pipes)) return Reason();
  OnlyThese handles({pipes.their_calls.get(), pipes.their_events.get()});
  auto job = MakeJob();
  if (!handles.IsGood() || !job) return Reason();
  const auto created =
      Create(program,
             L"\"" + program.wstring() + L"\" " + NumberOf(pipes.their_calls) + L" " +
                 NumberOf(pipes.their_events) + L" \"" + library.wstring() + L"\"",
             handles);
  if (created.hProcess == nullptr) return Reason();
  Handle process(created.hProcess);
  const Handle thread(created.hThread);
  if (AssignProcessToJobObject(job.get(), process.get()) == 0) {
    const auto reason = Reason();
    TerminateProcess(process.get(), 1);
    return reason;
  }
  ResumeThread(thread.get());
  return std::make_unique<WindowsHost>(std::move(process), std::move(job), std::move(pipes));
}

}  // namespace quillon::host
