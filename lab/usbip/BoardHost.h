// SPDX-License-Identifier: MIT
#pragma once

#include <filesystem>
#include <optional>
#include <ostream>
#include <vector>

#include "boards/Rig.h"
#include "usbip/Vhci.h"
#include "usbip/VirtualBoard.h"

namespace quillon::usbip {

// Keeps the boards of a rig on the kernel's bus, all in one loop. It writes a line to `out` for
// each board that comes or goes, and to `err` what keeps one from working.
class BoardHost {
 public:
  BoardHost(const Vhci& vhci, const sim::Rig& rig,
            const std::optional<std::filesystem::path>& state_folder, std::ostream& out,
            std::ostream& err);

  // Runs until the file `stop` can be read, then takes all boards off the bus. Returns false when
  // the boards could not be put there to begin with, or the loop broke.
  bool Run(int stop);

 private:
  struct Plugged {
    VirtualBoard board;
    FileDescriptor socket{};
    Bytes unsent{};
  };

  bool Wait(int stop, bool& stopped);
  bool Follow(Plugged& plugged);
  void Receive(Plugged& plugged);
  void Send(Plugged& plugged);
  void Leave(Plugged& plugged);
  int Patience() const;

  const Vhci& vhci_;
  std::vector<Plugged> boards_;
  std::ostream& out_;
  std::ostream& err_;
};

}  // namespace quillon::usbip
