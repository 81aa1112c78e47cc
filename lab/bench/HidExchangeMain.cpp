// SPDX-License-Identifier: MIT
//
// What the library over hidapi adds to an exchange. The board is a thread of this process at the
// end of a socket pair, which hidapi is made to take for a hidraw node; the floor is the same board
// at the end of another one.
#include <fcntl.h>
#include <linux/hidraw.h>
#include <linux/ioctl.h>
#include <poll.h>
#include <sched.h>
#include <sys/socket.h>
#include <sys/syscall.h>
#include <unistd.h>

#include <array>
#include <chrono>
#include <cstdarg>
#include <cstdio>
#include <cstdlib>
#include <cstring>
#include <filesystem>
#include <fstream>
#include <memory>
#include <thread>
#include <vector>

#include "bench/Figures.h"
#include "boards/HidInterfaces.h"
#include "boards/WiredBoard.h"
#include "kvusb/hid/HidBoards.h"
#include "kvusb/hid/LinuxHid.h"

namespace {

constexpr const char* kBoard = "/dev/hidraw0";
int board_end = -1;

}  // namespace

// These two stand before the C library's for hidapi, to which they present the board.
extern "C" __attribute__((visibility("default"))) int open(const char* path, int flags, ...) {
  va_list arguments;
  va_start(arguments, flags);
  const mode_t mode = (flags & O_CREAT) != 0 ? va_arg(arguments, mode_t) : 0;
  va_end(arguments);
  if (std::strcmp(path, kBoard) == 0) return dup(board_end);
  return static_cast<int>(syscall(SYS_openat, AT_FDCWD, path, flags, mode));
}

extern "C" __attribute__((visibility("default"))) int ioctl(int file, unsigned long request, ...) {
  va_list arguments;
  va_start(arguments, request);
  void* const argument = va_arg(arguments, void*);
  va_end(arguments);
  if ((request & 0xFFFFFFFFU) == HIDIOCGRDESCSIZE) {
    *static_cast<int*>(argument) = 1;
    return 0;
  }
  return static_cast<int>(syscall(SYS_ioctl, file, request, argument));
}

namespace quillon::bench {
namespace {

namespace fs = std::filesystem;

constexpr int kExchanges = 2000, kRounds = 15;
constexpr std::uint8_t kReadHat = 0x13;
constexpr double kGoal = 1.5;

sim::WiredBoard Joystick() {
  auto rig = sim::ParseRig(R"({"boards": [{"id": "a", "product": "0x0910", "firmware": "2.82"}]})");
  return sim::WiredBoard(std::get<sim::Rig>(std::move(rig)).boards[0]);
}

// A board that answers at the end of a file until the other end is closed.
void Answer(int file) {
  sim::WiredBoard board = Joystick();
  std::array<std::uint8_t, KVUSB_PACKET_BYTES> request{};
  while (read(file, request.data(), request.size()) == KVUSB_PACKET_BYTES) {
    const auto outcome = board.Take(request);
    if (write(file, outcome.answer.data(), outcome.answer.size()) < 0) return;
  }
}

// The kernel's folders for one board.
fs::path MakeSys() {
  std::string pattern = (fs::temp_directory_path() / "quillon-bench-XXXXXX").string();
  const fs::path sys = mkdtemp(pattern.data());
  const fs::path hid = sys / "devices/usb1/1-1/1-1:1.0/0003:4C7E:0910.0001";
  fs::create_directories(hid / "hidraw/hidraw0");
  fs::create_directories(sys / "class/hidraw");
  fs::create_symlink("../../devices/usb1/1-1/1-1:1.0/0003:4C7E:0910.0001/hidraw/hidraw0",
                     sys / "class/hidraw/hidraw0");
  const auto interfaces = sim::HidInterfacesOf(Joystick().TheBoard());
  const auto& descriptor = interfaces.back().report_descriptor;
  std::ofstream(hid / "report_descriptor", std::ios::binary)
      .write(reinterpret_cast<const char*>(descriptor.data()),
             static_cast<std::streamsize>(descriptor.size()));
  return sys;
}

template <typename Exchange>
double PerExchange(const Exchange& exchange) {
  const auto begin = std::chrono::steady_clock::now();
  for (int i = 0; i < kExchanges; ++i) {
    HidPacket packet{};
    packet[4] = kReadHat;
    if (exchange(packet) && packet[0] == kReadHat) continue;
    std::fprintf(stderr, "an exchange failed\n");
    std::exit(1);
  }
  const std::chrono::duration<double, std::micro> time = std::chrono::steady_clock::now() - begin;
  return time.count() / kExchanges;
}

// Both sides on one processor: to wake another one costs more than all that is measured here, and
// the scheduler does it now and then.
void StayOnThisProcessor() {
  cpu_set_t here;
  CPU_ZERO(&here);
  CPU_SET(static_cast<unsigned>(sched_getcpu()), &here);
  sched_setaffinity(0, sizeof here, &here);
}

int Measure() {
  StayOnThisProcessor();
  std::array<int, 2> node{}, ends{};
  if (socketpair(AF_UNIX, SOCK_SEQPACKET, 0, node.data()) != 0) return 1;
  if (socketpair(AF_UNIX, SOCK_SEQPACKET, 0, ends.data()) != 0) return 1;
  board_end = node[0];
  std::thread(Answer, node[1]).detach();
  std::thread(Answer, ends[1]).detach();

  const fs::path sys = MakeSys();
  HidBoards boards({}, std::make_unique<LinuxHid>(sys));
  DeviceRecord record{};
  std::uint32_t count = 0;
  if (boards.DetectHID(count, {&record, 1}, 2) == 0) return 1;
  Pair pair;
  for (int round = 0; round <= kRounds; ++round) {
    const double ours = PerExchange([&](HidPacket& packet) {
      return boards.WriteData(record, packet) == KVUSB_OK &&
             boards.ReadData(record, packet) == KVUSB_OK;
    });
    const double floor = PerExchange([&](HidPacket& packet) {
      pollfd waiting{ends[0], POLLIN, 0};
      return write(ends[0], packet.data(), packet.size()) == KVUSB_PACKET_BYTES &&
             poll(&waiting, 1, 2000) == 1 && read(ends[0], packet.data(), 64) == 64;
    });
    if (round == 0) continue;
    pair.ours.push_back(ours);
    pair.floor.push_back(floor);
  }
  PrintRatio("exchange through hidapi (socket pair)", "us", pair, kGoal);
  std::printf("%-46s %9.2f %%\n", "  of 2 ms", Median(pair.ours) / 20.0);
  std::fflush(stdout);
  fs::remove_all(sys);
  return 0;
}

}  // namespace
}  // namespace quillon::bench

int main() { std::quick_exit(quillon::bench::Measure()); }
