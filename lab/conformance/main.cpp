// SPDX-License-Identifier: MIT
#include <iostream>
#include <string>
#include <thread>
#include <vector>

#include "conformance/ConformanceMain.h"

int main(int argc, char** argv) {
  const std::vector<std::string> arguments(argv + (argc > 0 ? 1 : 0), argv + argc);
  std::error_code none;
  std::filesystem::path self = std::filesystem::canonical("/proc/self/exe", none);
  if (none && argc > 0) self = std::filesystem::absolute(argv[0], none);
  const auto pause = [](std::chrono::milliseconds time) { std::this_thread::sleep_for(time); };
  return quillon::ConformanceMain(arguments, self.parent_path(),
                                  {std::cin, std::cout, std::cerr, pause});
}
