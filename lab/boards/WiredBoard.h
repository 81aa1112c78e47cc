// SPDX-License-Identifier: MIT
#pragma once

#include <chrono>
#include <cstddef>
#include <cstdint>
#include <filesystem>
#include <optional>
#include <string>

#include "boards/Board.h"
#include "boards/Faults.h"
#include "boards/Report.h"
#include "boards/Rig.h"

namespace quillon::sim {

// A board on a cable: takes reports, says what comes back, with the faults that the rig lists, and
// keeps its state in a folder. Whatever plugs boards in (the HID library of simulated boards, an
// emulated kernel, USB/IP) holds one of these for each board and does the rest, including the
// waiting.
class WiredBoard {
 public:
  enum class Delivery : std::uint8_t {
    kAnswer,    // an answer comes
    kNotTaken,  // the report did not reach the board
    kNoAnswer,  // the board did its work, but its answer is lost
    kStalled,   // the same, and nobody can tell that no answer will come
    kVanished,  // the board has left the bus: Unplug() is up to the caller
  };
  struct Outcome {
    Delivery delivery = Delivery::kAnswer;
    Answer answer{};
    std::size_t bytes = std::tuple_size_v<Answer>;  // how many of the answer arrive
    std::chrono::milliseconds busy{0};              // the answer takes this much longer than usual
    bool restart = false;  // Restart() is due once the answer is out, or lost
  };

  // Without a folder the board forgets all when the object goes.
  explicit WiredBoard(BoardSpec spec,
                      const std::optional<std::filesystem::path>& state_folder = std::nullopt);

  Outcome Take(Request request);

  // Starts again, in the mode that the last command asked for; the board's type, version and serial
  // number may be others then.
  void Restart();
  // Leaves the bus: starts again in the same mode when it comes back.
  void Unplug();

  void Provoke(const Fault& fault) { faults_.Add(fault); }
  bool ClosingFails() { return faults_.MatchClose(); }

  // What keeps the board's state from being read or kept, as a sentence; empty when all is well.
  const std::string& Problem() const {
    return load_problem_.empty() ? save_problem_ : load_problem_;
  }

  Board& TheBoard() { return board_; }
  const Board& TheBoard() const { return board_; }
  const BoardSpec& Spec() const { return board_.Spec(); }

  // The text of the record and of the USB descriptor; byte by byte what the rig says.
  const std::string& SerialText() const;

 private:
  void Keep();

  Board board_;
  Faults faults_;
  std::optional<std::filesystem::path> state_folder_;
  std::string load_problem_, save_problem_;
};

}  // namespace quillon::sim
