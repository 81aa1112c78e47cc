// SPDX-License-Identifier: MIT
#include <string_view>
#include <utility>

#include "boards/Family.h"

namespace quillon::sim {
namespace {

using Bytes = std::vector<std::uint8_t>;

// `bytes` bytes made of the given records, over and over.
Bytes Cycle(const Bytes& records, std::size_t bytes) {
  Bytes block(bytes);
  for (std::size_t i = 0; i < bytes; ++i) block[i] = records[i % records.size()];
  return block;
}

Bytes Analog() {
  return {
      0x59, 0xAB, 0x01,  // on, filter 5, 12 bits, X; bit 3 and the upper half of byte 1 stand idle
      0x51, 0x5B, 0x02,  // on, filter 5, 12 bits, Y
      0x35, 0x0B, 0x04,  // on, inverted, filter 3, 12 bits, Z
      0x9B, 0xF9, 0x08,  // on, spike, filter 9, 10 bits, Rx
      0x50, 0x1B, 0x00,  // off, filter 5
      0x58, 0x07, 0x00,  // off, filter 5, 8 bits
      0x01, 0x33, 0xC0,  // on, no filter, 4 bits, S1 and S2
      0xA0, 0x8B, 0x00,  // off, filter 10
  };
}

Bytes Encoders() {
  return {
      0xB9, 0x40, 0x10,  // on, 12 bits, Ry
      0xC3, 0x21, 0x20,  // on, incremental, 13 bits, centred by button 1, Rz
      0xB0, 0x80, 0x00,  // off
      0xB8, 0x00, 0x00,  // off
      0x34, 0xE0, 0x00,  // off, inverted, 4 bits
      0xB0, 0x10, 0x00,  // off, centred by button 16
      0xF8, 0x60, 0x00,  // the incremental channel, off, 16 bits
  };
}

Bytes AxisTweak() {
  return {
      0xA1, 2,  5, 3,  // X active, trims 2 and 3 %, dead zone 5 %
      0x45, 0,  4, 0,  // Y active
      0x29, 1,  0, 1,  // Z active
      0x0C, 0,  0, 0,  // Rx
      0x90, 0,  0, 0,  // Ry
      0x14, 0,  0, 0,  // Rz
      0xF8, 10, 0, 9,  // S1
      0x1C, 0,  0, 0,  // S2
  };
}

Bytes Digital() {
  return {
      0x01, 0,  0x00,  // on, normal
      0x09, 0,  0xA0,  // on, normal
      0x15, 0,  0x00,  // on, inverted, toggle
      0x21, 25, 0x50,  // on, pulse of 250 ms
      0x41, 0,  0x02,  // on, rotary, GRAY 2X
      0x49, 0,  0xF2,  // on, rotary, GRAY 2X
      0x33, 0,  0x00,  // on, master, momentary
      0x00, 0,  0x10,  // off
      0x01, 0,  0x00, 0x01, 0, 0x00, 0x09, 0, 0x00, 0x01, 0, 0x30,
      0x01, 0,  0x00, 0x01, 0, 0x00, 0x00, 0, 0x00, 0x08, 0, 0x00,
  };
}

Bytes SmallDigital() {
  Bytes block = {0x00};  // scan matrix mode off
  for (const std::uint8_t byte : Digital()) block.push_back(byte);
  return block;
}

Bytes MatrixInputs() { return Cycle({0x01, 0x01, 0x09, 0x13, 0x21, 0x29, 0x00, 0x01}, 64); }

Bytes MatrixPairs() {
  return Cycle({0x20, 0, 0, 0x81, 3, 4, 0x12, 0, 64, 0x43, 12, 0, 0x00, 0, 0}, 96);
}

Bytes Ports() {
  return {
      0x05, 0x00,  // master switch: input 5
      0x01, 0xA0,  // on, normal
      0x03, 0x00,  // on, inverted
      0x11, 0x50,  // on, toggle
      0x21, 0x02,  // on, rotary, GRAY 2X
      0x01, 0x01,  // on, normal, GRAY 1X
      0x00, 0xF0,  // off
      0x13, 0x13,  // on, inverted, toggle, GRAY 4X
      0x00, 0x00,  // off
  };
}

Bytes BankInputs() {
  return Cycle({0x01, 0,    0x00,   // on, normal
                0x0D, 0,    0xA0,   // on, normal
                0x21, 30,   0x00,   // on, pulse of 300 ms
                0x31, 5,    0x50,   // on, momentary
                0x41, 0,    0x01,   // on, rotary, GRAY 1X
                0x45, 0,    0xF1,   // on, rotary, GRAY 1X
                0x13, 0,    0x00,   // on, inverted, toggle
                0x00, 0x07, 0x30,   // off
                0x11, 0,    0x00,   // on, toggle
                0x23, 255,  0x00,   // on, inverted, pulse of 2550 ms
                0x41, 0,    0x02,   // on, rotary, GRAY 2X
                0x41, 0,    0xA2,   // on, rotary, GRAY 2X
                0x43, 0,    0x03,   // on, inverted, rotary, GRAY 4X
                0x43, 0,    0x03,   // on, inverted, rotary, GRAY 4X
                0x30, 1,    0x00,   // off, momentary
                0x01, 0,    0x00},  // on, normal
               96);
}

}  // namespace

Blocks FactoryBlocks(Family family) {
  const bool wide = family == Family::kJoystick;
  switch (family) {
    case Family::kJoystick:
    case Family::kSmallJoystick: {
      Blocks blocks = {{"analog_a", Analog()},
                       {"axis_tweak", AxisTweak()},
                       {"digital", wide ? Digital() : SmallDigital()},
                       {"hat", {0xA1, 0xE4, 0x53, 0x1B}}};
      if (wide) blocks["analog_b"] = Encoders();
      if (wide) blocks["expansion"] = {0x81, 0x02};
      return blocks;
    }
    case Family::kScanMatrix:
      return {{"inputs", MatrixInputs()}, {"pairs", MatrixPairs()}, {"expansion", {0x41, 0x01}}};
    case Family::kDigitalPorts:
      return {{"ports", Ports()}};
    case Family::kInputBank:
      return {{"bank", {0x05, 0x20}}, {"inputs", BankInputs()}};
    case Family::kSpi:
      return {{"spi", {0x12, 0x52, 0x03, 0xE1, 0x10, 0x00, 0x92, 0x33}}};
    case Family::kNodes:
    case Family::kPlain:
      break;
  }
  return {};
}

}  // namespace quillon::sim
