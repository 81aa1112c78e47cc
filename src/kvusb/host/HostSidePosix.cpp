// SPDX-License-Identifier: MIT
#include <fcntl.h>
#include <sys/socket.h>
#ifdef __linux__
#include <sys/prctl.h>
#endif

#include <cerrno>
#include <csignal>
#include <cstdlib>

#include "kvusb/host/HostSide.h"

namespace quillon::host {
namespace {

class InheritedSocket : public Pipe {
 public:
  explicit InheritedSocket(int socket) : socket_(socket) {}

  std::size_t Read(std::span<std::uint8_t> to) override {
    return Retried([&] { return recv(socket_, to.data(), to.size(), 0); });
  }
  std::size_t Write(std::span<const std::uint8_t> bytes) override {
    return Retried([&] { return send(socket_, bytes.data(), bytes.size(), MSG_NOSIGNAL); });
  }

 private:
  template <typename Call>
  static std::size_t Retried(Call call) {
    for (;;) {
      const auto moved = call();
      if (moved >= 0) return static_cast<std::size_t>(moved);
      if (errno != EINTR) return 0;
    }
  }

  int socket_;
};

}  // namespace

std::vector<std::string> CommandLine(int argc, char** argv) {
  return {argv + (argc > 0 ? 1 : 0), argv + argc};
}

std::unique_ptr<Pipe> OpenInherited(const std::string& number) {
  const int socket = static_cast<int>(std::strtol(number.c_str(), nullptr, 10));
  fcntl(socket, F_SETFD, FD_CLOEXEC);
  return std::make_unique<InheritedSocket>(socket);
}

// An idle host sees the end of the pipe. One in a call needs the signal, which comes when the
// thread ends that has started it.
void EndWithProgram() {
#ifdef __linux__
  prctl(PR_SET_PDEATHSIG, SIGKILL);
#endif
}

}  // namespace quillon::host
