// SPDX-License-Identifier: MIT
#pragma once

#include <cstdint>
#include <map>
#include <optional>
#include <span>
#include <string>
#include <vector>

#include "boards/Report.h"

namespace quillon::sim {

enum class Family {
  kJoystick,       // 0x0910, 0x1000: analog, axes, digital, HAT, expansion port
  kSmallJoystick,  // 0x0920, 0x1010: the same without encoder channels and expansion port
  kScanMatrix,     // 0x0710, 0x1300: 64 inputs in pairs, expansion port
  kDigitalPorts,   // 0x0510, 0x1100: 8 ports
  kInputBank,      // 0x0520, 0x1110: 32 inputs
  kNodes,          // 0x0800, 0x1200: 12 nodes of two ports
  kSpi,            // 0x1400, 0x1500: 8 SPI channels
  kPlain,          // any other: no settings at all
};

Family FamilyOf(std::uint16_t product);

// The type under which a board of the family is detected while its firmware runs (KVUSB_TYPE_...).
std::uint32_t FirmwareType(Family family);

// "Joystick Controller (simulated)" and the like.
std::string DefaultName(Family family);

// A block of settings and the two commands that move it. The bytes have no meaning here: what is
// written is what is read again, to the last bit.
struct BlockCommands {
  Family family;
  const char* name;
  std::uint8_t read;
  std::uint8_t write;
  std::uint8_t bytes;
  // Index of the block's first byte in the board's table for blocks that travel in chunks, whose
  // requests name a range in bytes 2 and 3; 0 for a block that travels whole, without a range.
  std::uint8_t start;
};

// All blocks of all families.
std::span<const BlockCommands> AllBlocks();

using Blocks = std::map<std::string, std::vector<std::uint8_t>>;

// The blocks of a board as it leaves the factory. Bits without a meaning are set here and there, so
// that a program which loses them is found out.
Blocks FactoryBlocks(Family family);

// Carries out a read or write of a block. Nothing when the family has no such command.
std::optional<Reply> AnswerSettings(Family family, Blocks& blocks, Request request);

}  // namespace quillon::sim
