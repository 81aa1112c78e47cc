// SPDX-License-Identifier: MIT
#include <iostream>
#include <string>
#include <vector>

#include "cli/KvxMain.h"

int main(int argc, char** argv) {
  const std::vector<std::string> arguments(argv + (argc > 0 ? 1 : 0), argv + argc);
  return quillon::KvxMain(arguments, std::cout, std::cerr);
}
