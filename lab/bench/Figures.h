// SPDX-License-Identifier: MIT
#pragma once

#include <functional>
#include <string>
#include <vector>

namespace quillon::bench {

// Measured values of one side, one per run.
using Samples = std::vector<double>;

double Median(Samples samples);
double Least(const Samples& samples);

// Processor time of this process, in ms. Other processes do not count.
double ProcessorMilliseconds();

// Runs both sides in turn, `rounds` times after one round that does not count, and takes the
// processor time of each run.
struct Pair {
  Samples ours;
  Samples floor;
};
Pair MeasureInTurn(int rounds, const std::function<void()>& ours,
                   const std::function<void()>& floor);

// Prints one line: both medians, their ratio, the ratio of the least values, and whether the ratio
// of the medians meets the goal. A goal of 0 means that there is none.
void PrintRatio(const std::string& what, const char* unit, const Pair& pair, double goal);

}  // namespace quillon::bench
