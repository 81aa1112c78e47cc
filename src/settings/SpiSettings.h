// SPDX-License-Identifier: MIT
#pragma once

#include <span>

#include "settings/Setting.h"

// The settings of the SPI controller: 8 bytes, one for each channel. `_` marks bits that are kept
// as retrieved.
//
//          bit 7     6     5        4        3     2     1     0
//            +-----+-----+-----+----------+-----+-----+-----+-----+
//   byte 0   |        _        | CS level |     damping 0..3      |
//            +-----+-----+-----+----------+-----+-----+-----+-----+
//
//   12: "CS Line HIGH", damping MID.
namespace quillon {

std::span<const Page> SpiPages();

}  // namespace quillon
