// SPDX-License-Identifier: MIT
#include <signal.h>
#include <sys/signalfd.h>

#include <cstdio>
#include <iostream>
#include <string>
#include <vector>

#include "usbip/VirtualBoardMain.h"

int main(int argc, char** argv) {
  using namespace quillon::usbip;
  sigset_t stopping;
  sigemptyset(&stopping);
  sigaddset(&stopping, SIGINT);
  sigaddset(&stopping, SIGTERM);
  sigprocmask(SIG_BLOCK, &stopping, nullptr);
  const FileDescriptor stop(signalfd(-1, &stopping, SFD_CLOEXEC));
  if (!stop.IsOpen()) {
    std::perror("quillon-virtual-board: signalfd");
    return kBoardsBad;
  }
  const std::vector<std::string> arguments(argv + (argc > 0 ? 1 : 0), argv + argc);
  return VirtualBoardMain(arguments, Vhci(), stop.Number(), std::cout, std::cerr);
}
