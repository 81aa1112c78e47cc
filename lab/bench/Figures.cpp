// SPDX-License-Identifier: MIT
#include "bench/Figures.h"

#include <algorithm>
#include <cstdio>
#include <ctime>

namespace quillon::bench {

double Median(Samples samples) {
  if (samples.empty()) return 0.0;
  std::sort(samples.begin(), samples.end());
  const std::size_t half = samples.size() / 2;
  return samples.size() % 2 == 1 ? samples[half] : (samples[half - 1] + samples[half]) / 2.0;
}

double Least(const Samples& samples) {
  return samples.empty() ? 0.0 : *std::min_element(samples.begin(), samples.end());
}

double ProcessorMilliseconds() {
  timespec now{};
  clock_gettime(CLOCK_PROCESS_CPUTIME_ID, &now);
  return static_cast<double>(now.tv_sec) * 1e3 + static_cast<double>(now.tv_nsec) / 1e6;
}

Pair MeasureInTurn(int rounds, const std::function<void()>& ours,
                   const std::function<void()>& floor) {
  const auto timed = [](const std::function<void()>& work) {
    const double begin = ProcessorMilliseconds();
    work();
    return ProcessorMilliseconds() - begin;
  };
  Pair pair;
  for (int round = 0; round <= rounds; ++round) {
    const double our_time = timed(ours);
    const double floor_time = timed(floor);
    if (round == 0) continue;
    pair.ours.push_back(our_time);
    pair.floor.push_back(floor_time);
  }
  return pair;
}

void PrintRatio(const std::string& what, const char* unit, const Pair& pair, double goal) {
  const double ours = Median(pair.ours);
  const double floor = Median(pair.floor);
  const double ratio = ours / floor;
  std::printf("%-46s %9.2f %9.2f %-3s ratio %5.2f (least %5.2f)", what.c_str(), ours, floor, unit,
              ratio, Least(pair.ours) / Least(pair.floor));
  if (goal > 0.0) std::printf(", goal %.2f: %s", goal, ratio <= goal ? "met" : "MISSED");
  std::printf("\n");
  std::fflush(stdout);
}

}  // namespace quillon::bench
