// SPDX-License-Identifier: MIT
#include <fcntl.h>
#include <poll.h>
#include <spawn.h>
#include <sys/socket.h>
#include <sys/wait.h>
#include <unistd.h>

#include <algorithm>
#include <array>
#include <cerrno>
#include <csignal>
#include <limits>
#include <system_error>
#include <utility>

#include "kvusb/host/HostProcess.h"

extern char** environ;

namespace quillon::host {
namespace {

class Socket : public Pipe {
 public:
  using Clock = HostProcess::Clock;

  explicit Socket(int socket) : socket_(socket) {}
  ~Socket() override { close(socket_); }

  void SetDeadline(Clock::time_point deadline) { deadline_ = deadline; }
  bool WasLate() const { return late_; }
  void Shut(int how) const { shutdown(socket_, how); }

  std::size_t Read(std::span<std::uint8_t> to) override {
    return Moved(POLLIN, [&] { return recv(socket_, to.data(), to.size(), MSG_DONTWAIT); });
  }
  // There is nearly always room at once.
  std::size_t Write(std::span<const std::uint8_t> bytes) override {
    const auto write = [&] {
      return send(socket_, bytes.data(), bytes.size(), MSG_NOSIGNAL | MSG_DONTWAIT);
    };
    const auto written = write();
    return written > 0 ? static_cast<std::size_t>(written) : Moved(POLLOUT, write);
  }

 private:
  template <typename Call>
  std::size_t Moved(short events, Call call) {
    late_ = false;
    while (Await(events)) {
      const auto moved = call();
      if (moved >= 0) return static_cast<std::size_t>(moved);
      if (errno != EINTR && errno != EAGAIN) return 0;
    }
    late_ = true;
    return 0;
  }

  // False at the deadline.
  bool Await(short events) const {
    for (;;) {
      pollfd waited{socket_, events, 0};
      const int ready = poll(&waited, 1, Left());
      if (ready != 0 && !(ready < 0 && errno == EINTR)) return true;
      if (Left() == 0) return false;
    }
  }

  // In milliseconds, rounded up; -1 for ever.
  int Left() const {
    if (deadline_ == Clock::time_point::max()) return -1;
    const auto left = std::chrono::ceil<std::chrono::milliseconds>(deadline_ - Clock::now());
    if (left.count() <= 0) return 0;
    return static_cast<int>(std::min<long long>(left.count(), std::numeric_limits<int>::max()));
  }

  int socket_;
  Clock::time_point deadline_ = Clock::time_point::max();
  bool late_ = false;
};

struct Pair {
  std::unique_ptr<Socket> ours;
  int theirs = -1;

  Pair() {
    std::array<int, 2> ends{};
    if (socketpair(AF_UNIX, SOCK_STREAM | SOCK_CLOEXEC, 0, ends.data()) != 0) return;
    ours = std::make_unique<Socket>(ends[0]);
    theirs = ends[1];
  }
  ~Pair() {
    if (theirs >= 0) close(theirs);
  }
  Pair(const Pair&) = delete;
  Pair& operator=(const Pair&) = delete;
};

bool IsCrash(int signal) {
  return signal == SIGSEGV || signal == SIGBUS || signal == SIGILL || signal == SIGFPE ||
         signal == SIGABRT || signal == SIGSYS || signal == SIGTRAP;
}

class PosixHost final : public HostProcess {
 public:
  PosixHost(pid_t process, std::unique_ptr<Socket> calls, std::unique_ptr<Socket> events)
      : process_(process), calls_(std::move(calls)), events_(std::move(events)) {}
  ~PosixHost() override { PosixHost::End(); }

  Pipe& Calls() override { return *calls_; }
  Pipe& Events() override { return *events_; }
  void SetDeadline(Clock::time_point deadline) override { calls_->SetDeadline(deadline); }
  bool WasLate() const override { return calls_->WasLate(); }

  void Leave(Clock::time_point deadline) override {
    calls_->Shut(SHUT_WR);
    calls_->SetDeadline(deadline);
    std::array<std::uint8_t, 64> unused{};
    while (calls_->Read(unused) > 0) continue;
  }

  // One that ends already keeps its own reason. It may have left a process behind that still holds
  // the pipes.
  Ending End() override {
    if (process_ <= 0) return Ending::kKilled;
    kill(process_, SIGKILL);
    int status = 0;
    while (waitpid(process_, &status, 0) < 0 && errno == EINTR) continue;
    process_ = 0;
    events_->Shut(SHUT_RDWR);
    if (WIFEXITED(status)) return Ending::kLeft;
    return IsCrash(WTERMSIG(status)) ? Ending::kCrashed : Ending::kKilled;
  }

 private:
  pid_t process_;
  std::unique_ptr<Socket> calls_;
  std::unique_ptr<Socket> events_;
};

// The child keeps the two sockets; nothing that the library prints gets among the program's output.
int Spawn(pid_t& process, const std::string& program, const std::string& library, int calls,
          int events) {
  posix_spawn_file_actions_t actions;
  posix_spawn_file_actions_init(&actions);
  for (const int kept : {calls, events}) posix_spawn_file_actions_adddup2(&actions, kept, kept);
  posix_spawn_file_actions_addopen(&actions, STDOUT_FILENO, "/dev/null", O_WRONLY, 0);
  std::array<std::string, 4> words{program, std::to_string(calls), std::to_string(events), library};
  std::array<char*, 5> arguments{words[0].data(), words[1].data(), words[2].data(), words[3].data(),
                                 nullptr};
  const int error =
      posix_spawn(&process, program.c_str(), &actions, nullptr, arguments.data(), environ);
  posix_spawn_file_actions_destroy(&actions);
  return error;
}

std::string Reason(int error) { return std::generic_category().message(error); }

}  // namespace

std::variant<std::unique_ptr<HostProcess>, std::string> StartHost(
    const std::filesystem::path& program, const std::filesystem::path& library) {
  Pair calls;
  Pair events;
  if (!calls.ours || !events.ours) return Reason(errno);
  pid_t process = 0;
  const int error = Spawn(process, program.string(), library.string(), calls.theirs, events.theirs);
  if (error != 0) return Reason(error);
  return std::make_unique<PosixHost>(process, std::move(calls.ours), std::move(events.ours));
}

}  // namespace quillon::host
