// SPDX-License-Identifier: MIT
#pragma once

#include <cstdint>
#include <optional>
#include <vector>

#include "boards/Report.h"

namespace quillon::sim {

enum class FaultKind {
  kWriteFails,   // the board sees nothing; WriteData returns 1
  kReadFails,    // the board does its work; ReadData returns 1
  kStall,        // the board does its work; ReadData waits as long as it can and returns 4
  kWrongEcho,    // the board does its work; byte 0 of the answer is `value`
  kShortAnswer,  // the board does its work; only `value` bytes of the answer arrive
  kStatus,       // the board does not do its work; byte 0 of the answer is `value`
  kVanish,       // the board leaves the bus instead of taking the request; WriteData returns 1
  kCloseFails,   // CloseDevices returns 0; the board is closed all the same
};

// Something that goes wrong. Requests that match are counted from the moment the fault is provoked;
// a match may be narrowed to a command, and for node commands to a function and a node.
struct Fault {
  FaultKind kind = FaultKind::kReadFails;
  std::optional<std::uint8_t> command = std::nullopt;
  std::optional<std::uint8_t> function = std::nullopt;  // byte 6
  std::optional<std::uint8_t> node = std::nullopt;      // byte 7, counted from 0
  unsigned nth = 1;    // the first match that goes wrong, counted from 1
  unsigned times = 1;  // how many go wrong; 0 for all from there on
  std::uint8_t value = kRefused;
};

class Faults {
 public:
  void Add(const Fault& fault) { armed_.push_back({fault}); }

  // Counts the request and returns the fault that it meets, if any; of several the oldest.
  std::optional<Fault> Match(Request request);

  // The same for a closing.
  bool MatchClose();

 private:
  struct Armed {
    Fault fault;
    unsigned seen = 0;
    bool Fires();
  };
  std::vector<Armed> armed_;
};

}  // namespace quillon::sim
