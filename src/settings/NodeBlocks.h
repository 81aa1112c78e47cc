// SPDX-License-Identifier: MIT
#pragma once

#include <cstdint>

#include "settings/Field.h"

// What a node keeps of each of its two I/O ports: four blocks, read and written with node
// functions. kFirst and kSecond are where the block of the node's first and second port starts in
// the node's memory. `_` marks bits that are kept as retrieved.
namespace quillon {

// The port itself: 2 bytes.
//
//          bit 7     6     5     4     3     2       1      0
//            +-----+-----+-----+-----+-----+-----+-------+-----+
//   byte 0   | always 0  |      output mode      | input | on  |
//            +-----+-----+-----+-----+-----+-----+-------+-----+
//   byte 1   |             unused, always sent as 0            |
//            +-----+-----+-----+-----+-----+-----+-------+-----+
//
//   07 00: on, input, Multiplexed.
//   19 00: on, output, SPI.
namespace port_word {

inline constexpr std::uint8_t kRead = 0x25, kWrite = 0x26;
inline constexpr std::uint8_t kFirst = 6, kSecond = 8, kBytes = 2;

inline constexpr Field kOn{0, 0, 1}, kInput{0, 1, 1}, kMode{0, 2, 4}, kUnused{0, 6, 10};

}  // namespace port_word

// The lines of a port in direct mode: a byte for each of 15 outputs.
//
//          bit 7     6     5     4     3     2     1     0
//            +-----+-----+-----+-----+-----+-----+-----+-----+
//   byte 0   |         unused, always sent as 0        | on  |
//            +-----+-----+-----+-----+-----+-----+-----+-----+
//
//   01: on.
namespace outputs {

inline constexpr std::uint8_t kRead = 0x27, kWrite = 0x28;
inline constexpr std::uint8_t kFirst = 10, kSecond = 25, kBytes = 15;

inline constexpr Field kOn{0, 0, 1}, kUnused{0, 1, 7};

}  // namespace outputs

// The graphic display of a port: one byte, the index of its resolution.
//
//   00: 192x64.
namespace display {

inline constexpr std::uint8_t kRead = 0x34, kWrite = 0x35;
inline constexpr std::uint8_t kFirst = 40, kSecond = 41, kBytes = 1;

inline constexpr Field kResolution{0, 0, 8};

}  // namespace display

// The SPI or DAC channels of a port: a byte for each of 10.
//
//          bit 7     6     5     4     3     2     1     0
//            +-----+-----+-----+-----+-----+-----+-----+-----+
//   byte 0   |     _     |   bits    |     damping 0..3      |
//            +-----+-----+-----+-----+-----+-----+-----+-----+
//
//   27: damping 7, shown and sent back as HI (3); 24 bits (2).
namespace dac {

inline constexpr std::uint8_t kRead = 0x14, kWrite = 0x10;
inline constexpr std::uint8_t kFirst = 42, kSecond = 52, kBytes = 10;

inline constexpr Field kDamping{0, 0, 4}, kBits{0, 4, 2};

}  // namespace dac

}  // namespace quillon
