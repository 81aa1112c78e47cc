// SPDX-License-Identifier: MIT
#pragma once

#include <cstdint>
#include <span>
#include <variant>

#include "firmware/KvxImage.h"
#include "firmware/VersionWord.h"

namespace quillon {

// The file is for the boards of another product.
struct WrongDevice {
  std::uint16_t device_id = 0;

  bool operator==(const WrongDevice&) const = default;
};

// The file brings nodes another release than the one that this program works with.
struct WrongNodeRelease {
  VersionWord version = 0;

  bool operator==(const WrongNodeRelease&) const = default;
};

// An image for nodes, or the first thing that speaks against the file.
using NodeFile = std::variant<KvxImage, WrongDevice, WrongNodeRelease, KvxProblem>;

// Reads firmware for the nodes of a board of this product. The header is judged before the records
// are looked at: first the device id, then whether the file is for nodes, then its release.
NodeFile ReadNodeFile(std::span<const std::uint8_t> file, std::uint16_t product_id);

}  // namespace quillon
