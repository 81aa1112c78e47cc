// SPDX-License-Identifier: MIT
#pragma once

#include <sys/types.h>

#include <ctime>
#include <string>

namespace quillon::bench {

// Milliseconds of a clock that never runs backwards.
double Now();

// What all threads of a process have done so far.
struct Activity {
  long wake_ups = 0;   // voluntary context switches
  long preempted = 0;  // the others
  long ticks = 0;      // processor time in units of the kernel's clock, user and system
};

// A program under measurement. The constructor starts it, the destructor ends it.
class Child {
 public:
  explicit Child(const std::string& program);
  ~Child();
  Child(const Child&) = delete;
  Child& operator=(const Child&) = delete;

  double StartedAt() const { return started_at_; }
  // Processor time of all its threads in ms, as exact as the kernel keeps it.
  double ProcessorTime() const;
  // Waits until it has used no processor time for `quiet` ms, and returns when it last did.
  double WaitUntilQuiet(double quiet) const;

  // Peak resident memory in KiB.
  double PeakMemory() const;
  // The first mapped file that belongs to a GL driver; empty when there is none.
  std::string MappedGlDriver() const;
  Activity TotalActivity() const;

 private:
  std::string Folder() const { return "/proc/" + std::to_string(pid_); }

  double started_at_;
  pid_t pid_;
  clockid_t clock_ = CLOCK_MONOTONIC;
};

}  // namespace quillon::bench
