// SPDX-License-Identifier: MIT
//
// quillon-bench-start <runs> <idle seconds> <program> <floor program>: start, memory and idleness
// of both programs. Needs an X server of its own without a window manager.
#include <unistd.h>

#include <cstdio>
#include <cstdlib>

#include "bench/Child.h"
#include "bench/Figures.h"
#include "bench/MapWatch.h"

namespace quillon::bench {
namespace {

constexpr double kSettle = 500.0;  // Quillon's wait for boards, in which it does nothing
constexpr double kQuiet = 900.0;   // longer than that
constexpr double kStartGoal = 1.5;
constexpr double kNoGoal = 0.0;
constexpr double kMemoryGoal = 1.3;

struct Side {
  std::string program;
  double settle;
  Samples wall{}, processor{}, filled_wall{}, filled_processor{}, memory{};
  std::string gl_driver{};
};

// False when no window came.
bool RunOnce(MapWatch& watch, Side& side, bool counts) {
  watch.Drain();
  const Child child(side.program);
  const bool mapped = watch.WaitForWindow();
  const double mapped_at = Now();
  const double spent = child.ProcessorTime();
  if (!mapped) {
    std::fprintf(stderr, "%s shows no window\n", side.program.c_str());
    return false;
  }
  const double filled_at = child.WaitUntilQuiet(kQuiet);
  if (side.gl_driver.empty()) side.gl_driver = child.MappedGlDriver();
  if (!counts) return true;
  side.wall.push_back(mapped_at - child.StartedAt());
  side.processor.push_back(spent);
  side.filled_wall.push_back(filled_at - child.StartedAt() - side.settle);
  side.filled_processor.push_back(child.ProcessorTime());
  side.memory.push_back(child.PeakMemory() / 1024.0);
  return true;
}

bool MeasureIdleness(MapWatch& watch, const Side& side, int seconds) {
  watch.Drain();
  const Child child(side.program);
  if (!watch.WaitForWindow()) return false;
  child.WaitUntilQuiet(kQuiet);
  const Activity before = child.TotalActivity();
  const double spent = child.ProcessorTime();
  sleep(static_cast<unsigned>(seconds));
  const Activity after = child.TotalActivity();
  std::printf("idle for %2d s, %-28s %ld wake-ups, %ld preempted, %ld ticks, %.3f ms\n", seconds,
              side.program.substr(side.program.rfind('/') + 1).c_str(),
              after.wake_ups - before.wake_ups, after.preempted - before.preempted,
              after.ticks - before.ticks, child.ProcessorTime() - spent);
  return true;
}

void PrintDriver(const Side& side) {
  std::printf("GL driver mapped by %-26s %s\n",
              side.program.substr(side.program.rfind('/') + 1).c_str(),
              side.gl_driver.empty() ? "none" : side.gl_driver.c_str());
}

int Run(int runs, int idle_seconds, Side ours, Side floor) {
  MapWatch watch;
  if (!watch.IsConnected()) {
    std::fprintf(stderr, "there is no X server\n");
    return 1;
  }
  for (int run = 0; run <= runs; ++run) {
    if (!RunOnce(watch, ours, run > 0) || !RunOnce(watch, floor, run > 0)) return 1;
  }
  PrintRatio("start to first mapped window, wall", "ms", {ours.wall, floor.wall}, kStartGoal);
  PrintRatio("start to first mapped window, processor", "ms", {ours.processor, floor.processor},
             kStartGoal);
  // Quillon has asked its boards by then, each exchange taking its time, and paints twice.
  PrintRatio("start to filled window less settling, wall", "ms",
             {ours.filled_wall, floor.filled_wall}, kNoGoal);
  PrintRatio("start to filled window, processor", "ms",
             {ours.filled_processor, floor.filled_processor}, kNoGoal);
  PrintRatio("peak resident memory", "MiB", {ours.memory, floor.memory}, kMemoryGoal);
  PrintDriver(ours);
  PrintDriver(floor);
  const bool idle =
      MeasureIdleness(watch, ours, idle_seconds) && MeasureIdleness(watch, floor, idle_seconds);
  return idle ? 0 : 1;
}

}  // namespace
}  // namespace quillon::bench

int main(int argc, char** argv) {
  using namespace quillon::bench;
  if (argc != 5) {
    std::fprintf(stderr, "usage: %s <runs> <idle seconds> <program> <floor program>\n", argv[0]);
    return 2;
  }
  return Run(std::atoi(argv[1]), std::atoi(argv[2]), {argv[3], kSettle}, {argv[4], 0.0});
}
