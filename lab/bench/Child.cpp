// SPDX-License-Identifier: MIT
#include "bench/Child.h"

#include <fcntl.h>
#include <signal.h>
#include <sys/wait.h>
#include <unistd.h>

#include <array>
#include <filesystem>
#include <fstream>
#include <sstream>

namespace quillon::bench {
namespace {

double Milliseconds(clockid_t clock) {
  timespec time{};
  clock_gettime(clock, &time);
  return static_cast<double>(time.tv_sec) * 1e3 + static_cast<double>(time.tv_nsec) / 1e6;
}

// The number after `name` in a status file; 0 when it is not there.
long StatusEntry(const std::filesystem::path& file, const std::string& name) {
  std::ifstream status(file);
  std::string line;
  while (std::getline(status, line)) {
    if (line.starts_with(name + ":")) return std::stol(line.substr(name.size() + 1));
  }
  return 0;
}

// User and system time of a stat file. The program's name before them may hold blanks.
long Ticks(const std::filesystem::path& file) {
  constexpr int kFieldsBetween = 11;
  std::ifstream stat(file);
  std::string text;
  std::getline(stat, text);
  std::istringstream fields(text.substr(text.rfind(')') + 1));
  std::string skipped;
  for (int i = 0; i < kFieldsBetween; ++i) fields >> skipped;
  long user = 0;
  long system = 0;
  fields >> user >> system;
  return user + system;
}

[[noreturn]] void Become(const std::string& program) {
  const int nowhere = open("/dev/null", O_RDWR | O_CLOEXEC);
  dup2(nowhere, STDOUT_FILENO);
  std::string path = program;
  std::array<char*, 2> arguments{path.data(), nullptr};
  execv(path.c_str(), arguments.data());
  _exit(127);
}

}  // namespace

double Now() { return Milliseconds(CLOCK_MONOTONIC); }

Child::Child(const std::string& program) : started_at_(Now()), pid_(fork()) {
  if (pid_ == 0) Become(program);
  clock_getcpuclockid(pid_, &clock_);
}

Child::~Child() {
  if (pid_ <= 0) return;  // kill(-1) would end everything
  kill(pid_, SIGKILL);
  waitpid(pid_, nullptr, 0);
}

double Child::ProcessorTime() const { return Milliseconds(clock_); }

double Child::WaitUntilQuiet(double quiet) const {
  constexpr unsigned kStepMicroseconds = 1000;
  double busy_at = Now();
  double spent = ProcessorTime();
  while (Now() - busy_at < quiet) {
    usleep(kStepMicroseconds);
    const double time = ProcessorTime();
    if (time == spent) continue;
    spent = time;
    busy_at = Now();
  }
  return busy_at;
}

double Child::PeakMemory() const {
  return static_cast<double>(StatusEntry(Folder() + "/status", "VmHWM"));
}

std::string Child::MappedGlDriver() const {
  std::ifstream maps(Folder() + "/maps");
  std::string line;
  while (std::getline(maps, line)) {
    for (const char* part : {"libgallium", "libLLVM", "swrast", "libGLX_mesa", "/dri/"}) {
      if (line.find(part) != std::string::npos) return line.substr(line.find('/'));
    }
  }
  return {};
}

Activity Child::TotalActivity() const {
  Activity total;
  for (const auto& thread : std::filesystem::directory_iterator(Folder() + "/task")) {
    const auto status = thread.path() / "status";
    total.wake_ups += StatusEntry(status, "voluntary_ctxt_switches");
    total.preempted += StatusEntry(status, "nonvoluntary_ctxt_switches");
    total.ticks += Ticks(thread.path() / "stat");
  }
  return total;
}

}  // namespace quillon::bench
