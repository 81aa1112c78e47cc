// SPDX-License-Identifier: MIT
#include <iostream>
#include <thread>

#include "cli/Arguments.h"
#include "conformance/ConformanceMain.h"
#include "conformance/Process.h"

int main(int argc, char** argv) {
  const auto arguments = quillon::Arguments(argc, argv);
  const auto self = quillon::conformance::ProgramFile(argc > 0 ? argv[0] : "");
  const auto pause = [](std::chrono::milliseconds time) { std::this_thread::sleep_for(time); };
  return quillon::ConformanceMain(arguments, self.parent_path(),
                                  {std::cin, std::cout, std::cerr, pause});
}
