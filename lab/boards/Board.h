// SPDX-License-Identifier: MIT
#pragma once

#include <cstdint>
#include <optional>
#include <span>
#include <string>
#include <string_view>

#include "boards/Calibration.h"
#include "boards/Family.h"
#include "boards/Loader.h"
#include "boards/Nodes.h"
#include "boards/Rig.h"

namespace quillon::sim {

// All that a board keeps without power.
struct BoardState {
  bool flash_mode = false;
  std::string serial;
  std::optional<std::string> next_serial;  // becomes the serial number at the next start
  std::optional<std::uint16_t> queried;    // see Rig.h
  FlashImage flash;
  Blocks blocks;
  AxisRanges calibration;
  Nodes nodes;
};

// The state in which the rig's board is first plugged in.
BoardState FactoryState(const BoardSpec& spec);

// A board: answers requests, one after the other.
//
// In both modes: 6 identity (in Device Mode only boards of the second kind), 7 set serial number
// (three digits), 9 restart, 0xFF restart in the other mode; node boards 0x1C and 0x1D. 0xFF with
// an invalid image restarts the loader. In Flash Mode: the flash commands; any other command is
// CMD_FAIL. In Device Mode: the settings of the board's family. The flash commands are CMD_FAIL,
// any other command is refused (kRefused).
class Board {
 public:
  explicit Board(BoardSpec spec);

  const BoardSpec& Spec() const { return spec_; }
  BoardState& State() { return state_; }
  const BoardState& State() const { return state_; }

  // A settings block by its name in Family.cpp; empty when the family has no such block.
  std::span<std::uint8_t> Block(std::string_view name);

  std::uint32_t Type() const;         // KVUSB_TYPE_...
  std::uint16_t VersionWord() const;  // of the program that runs

  Reply Handle(Request request);
  // Answers with a status and does nothing.
  Reply Fail(std::uint8_t status, Request request);

  // Starts again, in the mode that the last command asked for.
  void Restart();
  // Starts again in the same mode, as after being unplugged.
  void LosePower();

 private:
  Reply Identity() const;
  Reply SetSerial(Request request);
  Reply HandleFlashMode(Request request);
  Reply HandleDeviceMode(Request request);

  BoardSpec spec_;
  Family family_;
  BoardState state_;
  Loader loader_;
  NodeBus node_bus_;
  Calibration calibration_;
  bool switch_mode_ = false;
};

}  // namespace quillon::sim
