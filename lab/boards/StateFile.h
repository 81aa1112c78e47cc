// SPDX-License-Identifier: MIT
#pragma once

#include <filesystem>
#include <optional>
#include <string>
#include <string_view>
#include <variant>

#include "boards/Board.h"

namespace quillon::sim {

// The state of a board as a JSON text, one object:
//
//   format 1, product, mode, serial, next_serial (if any), queried (if any),
//   flash {valid, bytes}, blocks {name: bytes}, calibration [[min, center, max] x 8],
//   nodes [{active, new, loader, flash_version, flash, memory} x 12]
//
// with bytes in hexadecimal. A flash update is saved at its erase and at its finish only: what is
// written in between is not valid, and is lost with the power.
std::string FormatState(const BoardSpec& spec, const BoardState& state);

// Reads such a text for the board, or says what is wrong with it.
std::variant<BoardState, std::string> ParseState(const BoardSpec& spec, std::string_view json);

struct LoadedState {
  std::optional<BoardState> state;
  std::string problem;  // a sentence, empty when all is well
};

// The state kept in `folder`/id.json, if any. A file that cannot be read or used is renamed to
// id.json.broken, and the problem says so. Also removes what a save that was killed left behind.
LoadedState LoadState(const std::filesystem::path& folder, const BoardSpec& spec);

// Keeps the state, whole or not at all, in a file for its owner alone: it holds a serial number and
// firmware. Returns the problem as a sentence, empty when kept.
std::string SaveState(const std::filesystem::path& folder, const BoardSpec& spec,
                      const BoardState& state);

}  // namespace quillon::sim
