// SPDX-License-Identifier: MIT
//
// quillon-bench-usb LIBRARY: what real boards cost, on an emulated kernel: an exchange, and a
// detection among many boards. Has to run under umockdev-wrapper.
//
// quillon-bench-usb --cycles N LIBRARY: plugs and unplugs a board of the kernel that
// quillon-emulated-boards gives it, and prints how much this process grew.
#include <fcntl.h>
#include <hidapi.h>
#include <poll.h>
#include <unistd.h>

#include <array>
#include <chrono>
#include <cstdio>
#include <cstdlib>
#include <cstring>
#include <filesystem>
#include <fstream>
#include <memory>

#include "bench/Figures.h"
#include "devlink/Detection.h"
#include "devlink/Exchange.h"
#include "devlink/LoadedLibrary.h"
#include "kernel/EmulatedKernel.h"

namespace quillon::bench {
namespace {

using quillon::testing::EmulatedKernel;

constexpr int kExchanges = 500, kRounds = 15, kDetections = 20;
constexpr double kNoGoal = 0.0;
constexpr std::uint8_t kReadHat = 0x13;

double WallMilliseconds() {
  const auto now = std::chrono::steady_clock::now().time_since_epoch();
  return std::chrono::duration<double, std::milli>(now).count();
}

std::unique_ptr<HidLibrary> Load(const char* file) {
  auto loaded = LoadLibraryFile(file);
  if (auto* const reason = std::get_if<std::string>(&loaded)) {
    std::fprintf(stderr, "%s\n", reason->c_str());
    std::exit(1);
  }
  return std::get<std::unique_ptr<HidLibrary>>(std::move(loaded));
}

sim::BoardSpec Joystick(int number) {
  auto rig = sim::ParseRig(R"({"boards": [{"id": "a", "product": "0x0910", "firmware": "2.82"}]})");
  sim::BoardSpec spec = std::get<sim::Rig>(std::move(rig)).boards[0];
  spec.id += std::to_string(number);
  spec.serial = std::to_string(100 + number);
  return spec;
}

void Detect(HidLibrary& library, DeviceTable& table) {
  if (!CloseBoards(library, table)) std::exit(1);
  table.Clear();
  for (const std::uint32_t type : {2U, 1U, 3U}) DetectBoards(library, table, type);
}

// Wall time of a run of exchanges, per exchange in microseconds.
template <typename Exchange>
double PerExchange(const Exchange& exchange) {
  const double begin = WallMilliseconds();
  for (int i = 0; i < kExchanges; ++i)
    if (!exchange()) {
      std::fprintf(stderr, "an exchange failed\n");
      std::exit(1);
    }
  return (WallMilliseconds() - begin) * 1000.0 / kExchanges;
}

// One request written and one answer awaited on an open file.
bool RawExchange(int file) {
  std::array<std::uint8_t, KVUSB_PACKET_BYTES> packet{};
  packet[kCommandByte] = kReadHat;
  if (write(file, packet.data(), packet.size()) != KVUSB_PACKET_BYTES) return false;
  pollfd waiting{file, POLLIN, 0};
  return poll(&waiting, 1, 2000) == 1 && read(file, packet.data(), 64) == 64;
}

void MeasureExchange(HidLibrary& library) {
  EmulatedKernel kernel;
  kernel.Add(Joystick(0));
  DeviceTable table;
  Pair pair;
  for (int round = 0; round <= kRounds; ++round) {
    Detect(library, table);
    const double ours = PerExchange([&] {
      HidPacket packet{};
      packet[kCommandByte] = kReadHat;
      return SendPacket(library, table.Record(0), packet) && packet[kEchoByte] == kReadHat;
    });
    // One listener at a time, or both would hear every answer.
    if (!CloseBoards(library, table)) std::exit(1);
    table.Clear();
    const int node = open(kernel.Device(0).c_str(), O_RDWR | O_CLOEXEC);
    const double bare = PerExchange([&] { return RawExchange(node); });
    close(node);
    if (round == 0) continue;
    pair.ours.push_back(ours);
    pair.floor.push_back(bare);
  }
  PrintRatio("exchange, emulated kernel (bare node)", "us", pair, kNoGoal);
}

void MeasureDetection(HidLibrary& library, int boards, int others) {
  EmulatedKernel kernel;
  for (int i = 0; i < boards; ++i) kernel.Add(Joystick(i));
  kernel.AddOthers(others);
  DeviceTable table;
  Pair pair;
  for (int i = 0; i <= kDetections; ++i) {
    const double begin = ProcessorMilliseconds();
    Detect(library, table);
    const double middle = ProcessorMilliseconds();
    hid_free_enumeration(hid_enumerate(0, 0));
    const double end = ProcessorMilliseconds();
    if (i == 0) continue;
    pair.ours.push_back(middle - begin);
    pair.floor.push_back(end - middle);
  }
  if (table.Count() != static_cast<std::uint32_t>(boards)) std::exit(1);
  const std::string what = "detection, " + std::to_string(boards) + " boards, " +
                           std::to_string(others) + " others (hid_enumerate)";
  PrintRatio(what, "ms", pair, kNoGoal);
  if (!CloseBoards(library, table)) std::exit(1);
}

long OpenFiles() {
  const std::filesystem::directory_iterator files("/proc/self/fd");
  return std::distance(begin(files), end(files));
}

// Resident memory in KiB.
long Memory() {
  std::ifstream statm("/proc/self/statm");
  long pages = 0;
  statm >> pages >> pages;
  return pages * sysconf(_SC_PAGESIZE) / 1024;
}

void MeasureGrowth(HidLibrary& library, int cycles) {
  const char* const control = std::getenv("EMULATED_BOARDS_CONTROL");
  const char* const done = std::getenv("EMULATED_BOARDS_DONE");
  if (control == nullptr || done == nullptr) std::exit(2);
  const int commands = open(control, O_WRONLY | O_CLOEXEC), answers = open(done, O_RDONLY);
  const auto tell = [&](const char* command) {
    char line = 0;
    if (write(commands, command, std::strlen(command)) < 0 || read(answers, &line, 1) != 1)
      std::exit(1);
  };
  DeviceTable table;
  // A board is opened for its first exchange.
  const auto ask_all = [&] {
    for (DeviceRecord& record : table.Boards()) {
      HidPacket packet{};
      packet[kCommandByte] = kReadHat;
      if (!SendPacket(library, record, packet)) std::exit(1);
    }
  };
  long files = 0, memory = 0;
  const int warm_up = cycles / 10;
  for (int i = 0; i < warm_up + cycles; ++i) {
    if (i == warm_up) {
      files = OpenFiles();
      memory = Memory();
    }
    tell("unplug 0\n");
    Detect(library, table);
    if (table.Count() != 1) std::exit(1);
    ask_all();
    tell("plug 0\n");
    Detect(library, table);
    if (table.Count() != 2) std::exit(1);
    ask_all();
  }
  std::printf("%d plugs and unplugs: %ld open files more, %ld KiB more\n", cycles,
              OpenFiles() - files, Memory() - memory);
}

}  // namespace
}  // namespace quillon::bench

int main(int argc, char** argv) {
  using namespace quillon::bench;
  if (argc == 4 && std::strcmp(argv[1], "--cycles") == 0) {
    MeasureGrowth(*Load(argv[3]), std::atoi(argv[2]));
    return 0;
  }
  if (argc != 2) return 2;
  const auto library = Load(argv[1]);
  MeasureExchange(*library);
  for (const auto& [boards, others] : {std::pair(1, 0), {10, 0}, {50, 0}, {1, 100}, {50, 100}})
    MeasureDetection(*library, boards, others);
  return 0;
}
