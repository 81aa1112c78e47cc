// SPDX-License-Identifier: MIT
#pragma once

#include <chrono>
#include <filesystem>
#include <functional>
#include <istream>
#include <ostream>
#include <span>
#include <string>

namespace quillon {

// Exit statuses of `kvusb-conformance`.
inline constexpr int kPromisesKept = 0;
inline constexpr int kPromisesBroken = 1;
inline constexpr int kNothingExamined = 2;  // wrong usage, or no library or no board to be had

struct ConformanceIo {
  std::istream& in;  // the person at the boards
  std::ostream& out;
  std::ostream& err;
  // Waits for boards to come back; tests do not wait.
  std::function<void(std::chrono::milliseconds)> pause;
};

// The program `kvusb-conformance`: `arguments` are those after its name, `program_folder` is where
// our own libraries are looked for.
int ConformanceMain(std::span<const std::string> arguments,
                    const std::filesystem::path& program_folder, const ConformanceIo& io);

}  // namespace quillon
