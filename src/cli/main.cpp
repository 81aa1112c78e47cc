// SPDX-License-Identifier: MIT
#include <iostream>

#include "cli/Arguments.h"
#include "cli/KvxMain.h"

int main(int argc, char** argv) {
  return quillon::KvxMain(quillon::Arguments(argc, argv), std::cout, std::cerr);
}
