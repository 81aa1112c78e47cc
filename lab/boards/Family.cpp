// SPDX-License-Identifier: MIT
#include "boards/Family.h"

#include <array>

namespace quillon::sim {
namespace {

constexpr auto kBlocks = std::to_array<BlockCommands>({
    {Family::kJoystick, "analog_a", 0x11, 0x0D, 24, 0},
    {Family::kJoystick, "analog_b", 0x15, 0x16, 21, 0},
    {Family::kJoystick, "axis_tweak", 0x22, 0x23, 32, 0},
    {Family::kJoystick, "digital", 0x12, 0x0E, 48, 0},
    {Family::kJoystick, "hat", 0x13, 0x0F, 4, 0},
    {Family::kJoystick, "expansion", 0x14, 0x10, 2, 0},
    {Family::kSmallJoystick, "analog_a", 0x11, 0x0D, 24, 0},
    {Family::kSmallJoystick, "axis_tweak", 0x22, 0x23, 32, 0},
    {Family::kSmallJoystick, "digital", 0x12, 0x0E, 49, 0},  // the scan matrix flag, then 16 x 3
    {Family::kSmallJoystick, "hat", 0x13, 0x0F, 4, 0},
    {Family::kScanMatrix, "inputs", 0x12, 0x0E, 64, 0x08},
    {Family::kScanMatrix, "pairs", 0x17, 0x18, 96, 0x48},
    {Family::kScanMatrix, "expansion", 0x14, 0x10, 2, 0},
    {Family::kDigitalPorts, "ports", 0x17, 0x18, 18, 0},
    {Family::kInputBank, "bank", 0x14, 0x10, 2, 0},
    {Family::kInputBank, "inputs", 0x12, 0x0E, 96, 0x08},
    {Family::kSpi, "spi", 0x14, 0x10, 8, 0},
});

}  // namespace

Family FamilyOf(std::uint16_t product) {
  switch (product) {
    case 0x0910:
    case 0x1000:
      return Family::kJoystick;
    case 0x0920:
    case 0x1010:
      return Family::kSmallJoystick;
    case 0x0710:
    case 0x1300:
      return Family::kScanMatrix;
    case 0x0510:
    case 0x1100:
      return Family::kDigitalPorts;
    case 0x0520:
    case 0x1110:
      return Family::kInputBank;
    case 0x0800:
    case 0x1200:
      return Family::kNodes;
    case 0x1400:
    case 0x1500:
      return Family::kSpi;
    default:
      return Family::kPlain;
  }
}

std::uint32_t FirmwareType(Family family) {
  return family == Family::kNodes || family == Family::kSpi ? 3 : 2;
}

std::string DefaultName(Family family) {
  switch (family) {
    case Family::kJoystick:
      return "Joystick Controller (simulated)";
    case Family::kSmallJoystick:
      return "Compact Joystick Controller (simulated)";
    case Family::kScanMatrix:
      return "Scan Matrix Controller (simulated)";
    case Family::kDigitalPorts:
      return "Digital Ports Controller (simulated)";
    case Family::kInputBank:
      return "Input Bank Controller (simulated)";
    case Family::kNodes:
      return "Node I/O System (simulated)";
    case Family::kSpi:
      return "SPI Controller (simulated)";
    case Family::kPlain:
      break;
  }
  return "Board (simulated)";
}

std::span<const BlockCommands> AllBlocks() { return kBlocks; }

}  // namespace quillon::sim
